// The live outline of the sheet, and the page geometry derived from its corners.
#pragma once

#include "docimage/sheet/sheet_geometry.h"
#include "state/parts.h"

#include <opencv2/core/mat.hpp>

#include <array>

namespace doccam {

enum class SheetFound { kSheet = 0, kNoOutline = -1, kNoSheet = -2 };

// Finds the sheet in the red-first frame, keeps its corners for the next still, and draws its
// outline into the frame if draw is set. Without a sheet nothing changes. Streaming thread.
SheetFound outlineSheet(cv::Mat frame, bool draw, record::Sheet& kept);

// Keeps corners that the page engine found, and those of outlineSheet() for restoreCorners().
void storeEngineCorners(const SheetCorners& corners, record::Sheet& kept);
void restoreCorners(record::Sheet& kept);

// Draws the lines between neighbouring corners into the red-first frame.
void drawOutline(cv::Mat& frame, const std::array<cv::Point2f, 4>& corners);

// The corners of a rectangle in the reduced copy, in frame pixels; and truncated toward zero.
std::array<cv::Point2f, 4> frameCorners(const cv::RotatedRect& box);
SheetCorners wholePixels(const std::array<cv::Point2f, 4>& corners);

// Keeps the crop of a sheet, and returns the clockwise degrees that straighten it.
float storeGeometry(const SheetCorners& corners, record::Sheet& kept);

} // namespace doccam
