// Mapping a rectangle in the reduced copy to a sheet's corners in the frame.
#pragma once

#include "docimage/sheet/sheet_corners.h"

#include <opencv2/core/types.hpp>

#include <array>

namespace doccam {

// The corners of a rectangle in the reduced copy, in frame pixels.
std::array<cv::Point2f, 4> frameCorners(const cv::RotatedRect& box);

// Truncates toward zero.
SheetCorners wholePixels(const std::array<cv::Point2f, 4>& corners);

} // namespace doccam
