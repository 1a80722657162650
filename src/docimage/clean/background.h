// Whitening the paper: coloured marks are sharpened, grey paper becomes white.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// Works in place on the blue-first page. Throws cv::Exception unless it is 8-bit with three
// channels and not empty.
void whitenBackground(cv::Mat page);

} // namespace doccam
