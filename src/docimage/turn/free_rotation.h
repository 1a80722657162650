// Turning a picture by any angle, onto a canvas that holds all of it.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// The picture turned clockwise by degrees about its middle, on a canvas that holds all of it, with
// black around it. Throws cv::Exception for an angle that is no number, and for types that
// cv::warpAffine does not take.
cv::Mat rotated(const cv::Mat& picture, float degrees);

double radiansOf(float degrees);

// The size of the canvas that holds a picture turned by radians, fractions cut off. Throws
// cv::Exception for a size beyond any picture's, as an angle that is no number gives.
cv::Size canvasSize(cv::Size picture, double radians);

// The 2 x 3 single-precision map that turns a picture by degrees counter-clockwise about its middle
// onto the middle of the canvas.
cv::Mat turnOnto(cv::Size canvas, cv::Size picture, double degrees);

} // namespace doccam
