// Turning a picture by any angle.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// The picture turned clockwise by degrees about its centre, on a black canvas that holds all of it.
// Throws cv::Exception for an angle that is not finite, and for types that cv::warpAffine rejects.
cv::Mat rotated(const cv::Mat& picture, float degrees);

double radiansOf(float degrees);

// The size of the canvas that holds a picture turned by radians, truncated. Throws cv::Exception
// for an impossible size, as of an angle that is not finite.
cv::Size canvasSize(cv::Size picture, double radians);

// The 2 x 3 single-precision map that turns a picture counter-clockwise by degrees about its centre
// onto the centre of the canvas.
cv::Mat turnOnto(cv::Size canvas, cv::Size picture, double degrees);

} // namespace doccam
