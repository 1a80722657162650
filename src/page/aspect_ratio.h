// The proportions of a rectangle seen in perspective.
#pragma once

#include "page/sheet.h"

namespace doccam::page {

// Width divided by height of the rectangle whose corners a camera with square pixels and its
// principal point in the middle of a picture of that size sees there. Where the view leaves several
// possible, as for one tilted about a side, a usual focal length and usual formats of paper decide.
double aspectRatio(const Corners& corners, cv::Size picture);

// How far a rectangle would be from right angles to look like that: the cosine of its angle, with
// the most favourable of the usual lenses.
double leastCosine(const Corners& corners, cv::Size picture);

} // namespace doccam::page
