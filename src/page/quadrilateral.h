// Quadrilaterals in the plane.
#pragma once

#include "page/sheet.h"

namespace doccam::page {

// Clockwise, beginning with the corner nearest to the top left.
Corners clockwise(const Corners& corners);

// Of clockwise corners; negative of others.
double areaOf(const Corners& corners);

bool isConvex(const Corners& corners);

// The mean of the corners.
cv::Point2d middleOf(const Corners& corners);

// Whether place lies inside of the clockwise corners.
bool contains(const Corners& corners, cv::Point2d place);

// Whether a sheet may look like that: convex, in the picture but for a margin on each side, both
// parts of the picture's sides and area, no corner too sharp.
bool isPlausible(const Corners& corners, cv::Size picture, double leastArea, double margin);

// The largest distance between a corner of one and the nearest one of the other.
double distanceBetween(const Corners& one, const Corners& other);

} // namespace doccam::page
