// What a reduced picture shows of edges.
#pragma once

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::page {

// A pixel on an edge of the reduced picture.
struct EdgePixel {
    cv::Point2f place;
    float angle;    // of the edge's normal, in degrees, 0 to 180
    float strength; // change in levels per pixel
};

struct Evidence {
    int factor;     // pixels of the picture to one of the reduced one, each way
    cv::Mat colour; // CV_32FC3: lightness and two differences of colours, in levels, smoothed
    std::vector<EdgePixel> edges;
    cv::Mat angles; // CV_32F: the angle at each edge pixel, below 0 elsewhere
};

// Of an 8-bit picture, grey or blue first.
Evidence evidenceOf(const cv::Mat& picture);

} // namespace doccam::page
