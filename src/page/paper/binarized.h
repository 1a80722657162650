// Parting a page in black and white.
#pragma once

#include "page/paper/thresholds.h"

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// 0 where the grey page is below its thresholds, else 255; without single black pixels.
cv::Mat binarized(const cv::Mat& grey, const Thresholds& thresholds);

} // namespace doccam::page
