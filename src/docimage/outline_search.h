// Finding the sheet: the largest bright outline in a reduced copy of the frame.
#pragma once

#include "docimage/sheet_corners.h"

#include <opencv2/core/mat.hpp>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace doccam {

// Frame pixels per pixel of the reduced copy, each way.
inline constexpr int kReduction = 4;

// Outlines of this area in reduced pixels, or less, are no sheet.
inline constexpr int kLargestSpeck = 400;

// The red-first frame in grey, a quarter as wide and high. Throws cv::Exception for a frame
// narrower or lower than four pixels.
cv::Mat reducedGrey(const cv::Mat& frame);

// The grey picture's slow changes: light fall-off, large shadows.
cv::Mat backgroundOf(const cv::Mat& grey);

// A grey level freed of 0.7 of its background's distance from the middle. Below 0 it becomes 0;
// above 255 it wraps around.
std::uint8_t liftedLevel(int grey, int background);

cv::Mat liftedContrast(const cv::Mat& grey, const cv::Mat& background);

// Black and white, the level chosen by Otsu's method.
cv::Mat binarised(const cv::Mat& grey);

// Where the largest area stands, the first of equal ones; none when no area is above 0.
std::optional<std::size_t> indexOfLargest(const std::vector<int>& areas);

// The corners of the smallest rectangle around a contour of the reduced copy, in frame pixels.
std::array<cv::Point2f, 4> frameCorners(const std::vector<cv::Point>& contour);

// Fractions cut off toward zero.
SheetCorners wholePixels(const std::array<cv::Point2f, 4>& corners);

} // namespace doccam
