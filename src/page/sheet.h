// A sheet of paper in a picture.
#pragma once

#include <opencv2/core/types.hpp>

#include <array>

namespace doccam::page {

// Clockwise, beginning with the corner nearest to the top left; pixel centres are whole numbers.
using Corners = std::array<cv::Point2d, 4>;

struct Sheet {
    Corners corners;
    double confidence = 0; // 0 to 1
    bool cut = false;      // part of it lies outside of the picture
};

} // namespace doccam::page
