// Drawing outlines into a picture.
#pragma once

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>

#include <span>

namespace doccam {

// Draws the closed outline three pixels wide with 255, exactly as OpenCV draws a contour of
// thickness 2. Neighbouring points must differ by one step in eight directions. plane is 8-bit with
// one channel, and no point may lie on its one-pixel frame.
void drawOutline(std::span<const cv::Point> outline, cv::Mat& plane);

} // namespace doccam
