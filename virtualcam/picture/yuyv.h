// Pictures as YUYV 4:2:2.
#pragma once

#include <opencv2/core.hpp>

#include <cstdint>
#include <vector>

namespace doccam::virtualcam {

// Converts blue green red to Y U Y V bytes, BT.601 with Y from 16 to 235 and chroma from 16 to 240;
// two neighbours share the mean of their chroma. The width must be even.
std::vector<std::uint8_t> encodeYuyv(const cv::Mat& picture);

} // namespace doccam::virtualcam
