// Makes JPEG files of pictures as OpenCV does, but hands the codec the rows as they are,
// where OpenCV turns each of them red first.
#pragma once

#include <opencv2/core/mat.hpp>

#include <optional>
#include <vector>

namespace doccam {

// The file's bytes: those of OpenCV. quality is held to 0 to 100. Nothing for what is
// not 8-bit with one channel or three, blue first, and for a picture too large to be a JPEG.
std::optional<std::vector<unsigned char>> jpegOf(const cv::Mat& picture, int quality);

} // namespace doccam
