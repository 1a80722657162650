// Whitening the paper: coloured marks are sharpened, grey paper becomes white.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// In place. Throws cv::Exception unless the blue-first page is 8-bit, three-channel, not empty.
void whitenBackground(cv::Mat page);

} // namespace doccam
