// Gamma correction.
#pragma once

#include <opencv2/core/mat.hpp>

#include <array>

namespace doccam {

// The 256 values that replace the samples 0 to 255.
std::array<unsigned char, 256> gammaCurve(float gamma);

// A copy, gamma-corrected if the picture is 8-bit with one or three channels.
cv::Mat gammaCorrected(const cv::Mat& picture, float gamma);

} // namespace doccam
