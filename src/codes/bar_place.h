// Where the bars of a linear code are.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam::codes {

// The bars that a scan line crosses from their first to their last, followed up and down as far as
// they reach in the 8-bit grey picture. Nothing if there are none.
std::optional<Corners> barsAcross(const cv::Mat& grey, cv::Point2d from, cv::Point2d to);

} // namespace doccam::codes
