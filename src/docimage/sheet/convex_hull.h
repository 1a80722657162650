// The convex hull of pixels.
#pragma once

#include <opencv2/core/types.hpp>

#include <vector>

namespace doccam {

// Reorders points, and leaves those in hull that are corners of their convex hull: from the
// leftmost, of several the highest, along the bottom to the right and back along the top. No three
// of them lie on a line. The points themselves where they are fewer than three or all alike.
void findConvexHull(std::vector<cv::Point>& points, std::vector<cv::Point>& hull);

} // namespace doccam
