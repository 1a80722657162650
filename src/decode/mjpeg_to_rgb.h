// Decodes a JPEG in memory row by row with libjpeg.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// How the decompression ends once all rows are read.
enum class Finish { kDestroy, kFinishAndDestroy };

// Decodes the colour JPEG of length bytes into out, which is allocated, continuous, 8-bit with
// three channels and at least as large. Red first. 0, also for data that ends early; -1 on failure,
// with one line on standard output.
int decodeJpeg(unsigned char* data, int length, cv::Mat& out, Finish finish);

// Copies count pixels of three bytes.
void copyRow(const unsigned char* pixels, int count, unsigned char* target);

} // namespace doccam
