// Making a sheet upright.
#pragma once

#include "page/sheet.h"

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// The sheet as an upright rectangle of its own proportions and of picture's type, with no more
// pixels than picture has of it; white where it lies outside of the picture. picture is 8-bit with
// one channel or three.
cv::Mat rectify(const cv::Mat& picture, const Corners& corners);

// The size of that rectangle, for a picture of the given size.
cv::Size rectifiedSize(const Corners& corners, cv::Size picture);

} // namespace doccam::page
