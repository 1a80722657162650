// Finding the sheet: the largest of the outlines in a reduced copy of the frame.
#pragma once

#include "docimage/sheet/sheet_corners.h"

#include <opencv2/core/types.hpp>

#include <array>
#include <optional>
#include <vector>

namespace doccam {

// Outlines of this area in reduced pixels, or less, are no sheet.
inline constexpr int kLargestSpeck = 400;

// Where the largest area stands, the first of equal ones; none when no area is above 0.
std::optional<std::size_t> indexOfLargest(const std::vector<int>& areas);

// The corners of a rectangle in the reduced copy, in frame pixels.
std::array<cv::Point2f, 4> frameCorners(const cv::RotatedRect& box);

// Fractions cut off toward zero.
SheetCorners wholePixels(const std::array<cv::Point2f, 4>& corners);

} // namespace doccam
