// Turning a picture by any angle, onto a canvas that holds all of it.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

double radiansOf(float degrees);

// The size of the canvas that holds a picture turned by radians, fractions cut off. Throws
// cv::Exception for a size beyond any picture's, as an angle that is no number gives.
cv::Size turnedSize(cv::Size picture, double radians);

// The 2 x 3 single-precision map that turns a picture by degrees counter-clockwise about its middle
// onto the middle of the canvas.
cv::Mat turnOnto(cv::Size canvas, cv::Size picture, double degrees);

} // namespace doccam
