// Pictures as YUYV 4:2:2.
#pragma once

#include <opencv2/core.hpp>

#include <cstdint>
#include <vector>

namespace doccam::virtualcam {

// Converts a blue-first picture to YUYV, BT.601 with luma from 16 to 235 and chroma from 16 to 240.
// Each pair of pixels shares its mean chroma. The width must be even.
std::vector<std::uint8_t> encodeYuyv(const cv::Mat& picture);

} // namespace doccam::virtualcam
