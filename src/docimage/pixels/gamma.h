// The curve that lifts dark samples.
#pragma once

#include <opencv2/core/mat.hpp>

#include <array>

namespace doccam {

// The 256 samples to put in place of 0 to 255.
std::array<unsigned char, 256> gammaCurve(float gamma);

// A copy of an 8-bit picture of one or three channels with its samples lifted; of any other an
// unchanged copy.
cv::Mat gammaCorrected(const cv::Mat& picture, float gamma);

} // namespace doccam
