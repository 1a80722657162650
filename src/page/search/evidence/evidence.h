// What a reduced picture shows of edges.
#pragma once

#include "page/sheet.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::page {

// A pixel on an edge of the reduced picture.
struct EdgePixel {
    cv::Point2f place;
    float direction; // to where the picture changes upwards, in degrees, 0 to 360
    float weight;    // 0 to 1: less if faint, or in a crowd as of print and texture
};

struct Evidence {
    int factor;     // pixels of the picture to one of the reduced one, each way
    cv::Mat colour; // CV_32FC3: lightness and two differences of colours, in levels, smoothed
    std::vector<EdgePixel> edges;
    cv::Mat directions; // CV_16S: whole degrees at each edge pixel, kNoEdge elsewhere
    cv::Mat roughness;  // CV_8U, in sixteenths of a level

    // Leaves out the edges of what lies there.
    void forgetWithin(const Corners& corners);
};

inline constexpr short kNoEdge = -1000;

// Of an 8-bit picture, grey or blue first.
Evidence evidenceOf(const cv::Mat& picture);

} // namespace doccam::page
