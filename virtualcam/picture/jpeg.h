// JPEG pictures in and out, as cameras make them.
#pragma once

#include <opencv2/core.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace doccam::virtualcam {

// Compresses a blue green red picture with chroma halved across (4:2:2), quality 1 to 100.
std::vector<std::uint8_t> encodeJpeg(const cv::Mat& picture, int quality);

// Reads a JPEG or PNG file as blue green red. Throws std::runtime_error naming the file when it
// cannot be read.
cv::Mat loadPhoto(const std::string& path);

} // namespace doccam::virtualcam
