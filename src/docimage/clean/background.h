// Whitening the paper: coloured marks are sharpened, grey paper becomes white.
#pragma once

#include "docimage/pixels/work_plane.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// In place. Throws cv::Exception unless the blue-first page is 8-bit, three-channel, not empty.
void whitenBackground(cv::Mat page);

// 255 on paper, brighter than its surroundings less a constant, which repeat the edge's pixels past
// it; 0 elsewhere.
WorkPlane paperOf(const cv::Mat& page);

} // namespace doccam
