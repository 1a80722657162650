// Where print may be light on a dark ground.
#pragma once

#include "documents/layers/coarse_page.h"

#include <opencv2/core/mat.hpp>

namespace doccam::host {

inline constexpr int kDarkGround = 150; // grey levels: darker ground may bear light print

// 8-bit, a value per cell: 255 in even dark areas outside of pictures, and in the light strokes
// that they enclose.
cv::Mat darkGrounds(const CoarsePage& coarse, const cv::Mat& pictures);

} // namespace doccam::host
