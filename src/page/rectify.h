// Making a sheet upright.
#pragma once

#include "page/sheet.h"

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// Width divided by height of the rectangle that a camera with square pixels, and its principal
// point in the middle of a picture of that size, sees as these corners.
double aspectRatio(const Corners& corners, cv::Size picture);

// The sheet as an upright rectangle of picture's type, white where it lies outside of the picture.
cv::Mat rectify(const cv::Mat& picture, const Corners& corners);

} // namespace doccam::page
