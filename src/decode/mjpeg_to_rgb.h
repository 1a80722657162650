// Decoding a JPEG in memory row by row with libjpeg.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// How the decompression ends after all rows are read.
enum class Finish { kDestroy, kFinishAndDestroy };

// Decodes the colour JPEG of length bytes into out, red first. out must be allocated, continuous,
// 8-bit with three channels and at least as large. Returns 0, also for truncated data; -1 on
// failure, with one line on standard output.
int decodeJpeg(unsigned char* data, int length, cv::Mat& out, Finish finish);

// Copies count pixels of three bytes.
void copyRow(const unsigned char* pixels, int count, unsigned char* target);

} // namespace doccam
