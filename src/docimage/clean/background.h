// Whitening the paper: coloured marks are sharpened, everything grey that is paper becomes white.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// Works on the blue-first page's own pixels. Throws cv::Exception unless it is 8-bit with three
// channels and not empty.
void whitenBackground(cv::Mat page);

} // namespace doccam
