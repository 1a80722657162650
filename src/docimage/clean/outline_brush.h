// Drawing outlines into a picture.
#pragma once

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>

#include <span>

namespace doccam {

// Sets the outline's pixels, and those around it that make the line three pixels wide, to 255: the
// same as OpenCV's contour of thickness 2. Neighbouring points of the closed outline
// differ by one step of eight directions. plane is 8-bit with one channel, and no point lies on its
// one-pixel frame.
void drawOutline(std::span<const cv::Point> outline, cv::Mat& plane);

} // namespace doccam
