// Encoding PNG files like OpenCV.
#pragma once

#include <opencv2/core/mat.hpp>

#include <optional>
#include <vector>

namespace doccam {

// The file's bytes, equal to OpenCV's. picture must have one channel, three or four, blue first, of
// 8 or 16 bits; none for others, and for a picture too large for a PNG.
std::optional<std::vector<unsigned char>> pngOf(const cv::Mat& picture);

} // namespace doccam
