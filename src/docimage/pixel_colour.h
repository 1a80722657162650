// When a pixel counts as coloured.
#pragma once

#include <opencv2/core/matx.hpp>

#include <algorithm>
#include <cstdlib>

namespace doccam {

// A grey pixel's samples lie within 30 of their mean, which is rounded down.
inline bool isColoured(const cv::Vec3b& pixel) {
    constexpr int kGreyest = 30;
    const int mean = (pixel[0] + pixel[1] + pixel[2]) / 3;
    return std::max({std::abs(mean - pixel[0]), std::abs(mean - pixel[1]),
                     std::abs(mean - pixel[2])}) > kGreyest;
}

} // namespace doccam
