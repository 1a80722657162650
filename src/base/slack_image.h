// Images whose memory reaches a little beyond their last pixel.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// The bytes behind the last pixel that may be written: one pair of pixels.
inline constexpr int kImageSlack = 6;

// A rows x columns image of 8-bit, three-channel pixels with kImageSlack bytes behind them. It is
// an image of its own, not a view into a larger one, whose surroundings OpenCV's border
// functions would look at. Throws cv::Exception for a size below 1 or when memory is short.
cv::Mat makeSlackImage(int rows, int columns);

} // namespace doccam
