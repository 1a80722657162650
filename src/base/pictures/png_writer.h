// Encoding PNG files like OpenCV, and black and white ones of one bit per pixel.
#pragma once

#include <opencv2/core/mat.hpp>

#include <optional>
#include <vector>

namespace doccam {

// The file's bytes, equal to OpenCV's. picture must have one channel, three or four, blue first, of
// 8 or 16 bits; none for others, and for a picture too large for a PNG.
std::optional<std::vector<unsigned char>> pngOf(const cv::Mat& picture);

// A file of one bit per pixel, 1 white, the highest of a byte leftmost, from rows of stride bytes.
// None for a picture too large for a PNG.
std::optional<std::vector<unsigned char>> pngOfBits(const unsigned char* bits, std::size_t stride,
                                                    int width, int height);

} // namespace doccam
