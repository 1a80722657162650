// How a camera was held, as pictures' Exif data has it.
#pragma once

#include <opencv2/core/mat.hpp>

#include <span>

namespace doccam {

// The orientation, 1 to 8, in Exif data, which begins with the byte order; 1 if it has none. Like
// OpenCV, finds nothing after a field that points past the data.
// https://www.cipa.jp/std/documents/e/DC-008-2012_E.pdf, section 4.6
int exifOrientation(std::span<const unsigned char> exif);

// Turns and mirrors picture upright.
void applyOrientation(int orientation, cv::Mat& picture);

} // namespace doccam
