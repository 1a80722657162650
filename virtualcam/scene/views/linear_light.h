// Pictures in linear light, in which shadows and mixtures of neighbouring points are sums and
// products.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::virtualcam {

// CV_16U, 65535 for white, of 8-bit sRGB.
cv::Mat toLinear(const cv::Mat& picture);

// 8-bit sRGB of CV_32F, 1 for white; clipped.
cv::Mat fromLinear(const cv::Mat& linear);

} // namespace doccam::virtualcam
