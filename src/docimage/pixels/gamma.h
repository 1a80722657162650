// Gamma correction.
#pragma once

#include <opencv2/core/mat.hpp>

#include <array>

namespace doccam {

// The 256 values that replace the samples 0 to 255.
std::array<unsigned char, 256> gammaCurve(float gamma);

// A gamma-corrected copy of an 8-bit picture of one or three channels; of any other an unchanged
// copy.
cv::Mat gammaCorrected(const cv::Mat& picture, float gamma);

} // namespace doccam
