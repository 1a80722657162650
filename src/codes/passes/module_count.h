// How many modules a place that looks like a code may have.
#pragma once

#include "codes/passes/likely_codes.h"

#include <opencv2/core/mat.hpp>

namespace doccam::codes {

// Whether lines through the place change between ink and paper as often as through the smallest
// codes. Words are as dense from left to right, but not from top to bottom.
bool hasModules(const cv::Mat& grey, const LikelyCode& likely);

} // namespace doccam::codes
