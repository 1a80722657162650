// A frame as the file that it is kept in.
#pragma once

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::host {

// The bytes of a JPEG, as the camera sent it, or of a PNG.
using FrameFile = std::vector<unsigned char>;

// ".jpg" for what begins like a JPEG, ".png" for all else.
const char* extensionOf(const FrameFile& frame);

// Its pixels, blue first; empty if it is damaged, truncated, or larger than any frame.
cv::Mat decoded(const FrameFile& frame);

// Whether the file of that descriptor begins and ends like a JPEG or a PNG.
bool isWholeFrame(int file);

// A PNG of pixels, blue first. Throws Failure if there is not enough memory.
FrameFile frameFileOf(const cv::Mat& pixels);

} // namespace doccam::host
