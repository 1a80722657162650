// Corners of codes.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/types.hpp>

#include <vector>

namespace doccam::codes {

// The upright rectangle around them.
cv::Rect2d boundsOf(const Corners& corners);

cv::Point2d middleOf(const Corners& corners);

// Whether place lies inside of them, or at most margin pixels outside.
bool contains(const Corners& corners, cv::Point2d place, double margin = 0);

// The smallest rectangle, at any angle, around points, of which there must be one at least. Its
// upper side runs, as nearly as it can, in the direction of reading.
Corners rectangleAround(const std::vector<cv::Point2d>& points, cv::Point2d reading);

// Whether both may be of the same code: the middle of one lies inside of the other.
bool areOfOneCode(const Corners& one, const Corners& other);

// Whether both lie over each other by a good part of the smaller one.
bool doOverlap(const Corners& one, const Corners& other);

// Whether one is above the other as it is read, with hardly a gap, as slices of the same bars are.
bool areStacked(const Corners& one, const Corners& other);

} // namespace doccam::codes
