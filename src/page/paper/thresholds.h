// The levels that part black from white on an evened page.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// On a grid of cells of scale by scale pixels, 16-bit integers: below is black.
struct Thresholds {
    cv::Mat levels;
    int scale = 1;
};

Thresholds thresholds(const cv::Mat& grey);

} // namespace doccam::page
