// The strokes of a mask, each of one colour.
#pragma once

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::host {

// A letter or another coherent stroke, or a part of a large one, which may cross others.
struct InkPiece {
    cv::Vec3f colour; // CIE L*a*b*
    int area = 0;     // pixels of the mask; 0: what is no ink, but the paper's grain
};

struct InkPieces {
    std::vector<InkPiece> pieces;
    cv::Mat numbers; // 32-bit integers of the mask's size: the number of a pixel's piece, or -1
};

// Where the pieces of a mask get their colours.
struct InkedPage {
    const cv::Mat& page;   // 8-bit
    const cv::Mat& ground; // the same without ink, of any size
    double dpi;
};

// Of a mask over all the page, without specks. light: of ink that is lighter than its ground.
InkPieces inkPieces(const cv::Mat& mask, const InkedPage& inked, bool light);

// The mask without specks and grain.
cv::Mat withoutGrain(const cv::Mat& mask, const InkedPage& inked, bool light);

} // namespace doccam::host
