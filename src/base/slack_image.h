// Images whose memory extends slightly past the last pixel.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// The number of bytes past the last pixel that may be written: one pair of pixels.
inline constexpr int kImageSlack = 6;

// A black rows x columns image of 8-bit, three-channel pixels followed by kImageSlack bytes or
// more. Throws cv::Exception for a size below 1 or if out of memory.
cv::Mat makeSlackImage(int rows, int columns);

} // namespace doccam
