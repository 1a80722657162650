// The corners of a rectangle found in the reduced copy, as corners of a sheet in the frame.
#pragma once

#include "docimage/sheet/sheet_corners.h"

#include <opencv2/core/types.hpp>

#include <array>

namespace doccam {

// The corners of a rectangle in the reduced copy, in frame pixels.
std::array<cv::Point2f, 4> frameCorners(const cv::RotatedRect& box);

// Fractions cut off toward zero.
SheetCorners wholePixels(const std::array<cv::Point2f, 4>& corners);

} // namespace doccam
