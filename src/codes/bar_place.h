// Where the bars of a linear code are.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

#include <optional>
#include <vector>

namespace doccam::codes {

// The bars that a scan line crosses from their first to their last, followed up and down as far as
// they reach in the 8-bit grey picture. Nothing if there are none.
std::optional<Corners> barsAcross(const cv::Mat& grey, cv::Point2d from, cv::Point2d to);

// The same for bars whose first, last and others lie under the points, of which two are the ends of
// a scan line.
std::optional<Corners> barsThrough(const cv::Mat& grey, const std::vector<cv::Point2d>& points,
                                   cv::Point2d from, cv::Point2d to);

// The direction of bars, from the code's top to its bottom, of length 1.
cv::Point2d alongOf(const Corners& bars);

} // namespace doccam::codes
