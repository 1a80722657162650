// Reading and writing JPEGs as cameras make them.
#pragma once

#include <opencv2/core.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace doccam::virtualcam {

// Compresses a blue-first picture as 4:2:2 with quality 1 to 100.
std::vector<std::uint8_t> encodeJpeg(const cv::Mat& picture, int quality);

// Reads a JPEG or PNG file, blue first. Throws std::runtime_error naming the file on failure.
cv::Mat loadPhoto(const std::string& path);

} // namespace doccam::virtualcam
