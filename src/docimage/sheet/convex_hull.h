// The convex hull of pixels.
#pragma once

#include <opencv2/core/types.hpp>

#include <vector>

namespace doccam {

// Reorders points, and stores the corners of their convex hull in hull: from the leftmost, of
// several the highest, along the bottom to the right and back along the top. No three are
// collinear. Fewer than three points, or equal ones, are returned as they are.
void findConvexHull(std::vector<cv::Point>& points, std::vector<cv::Point>& hull);

} // namespace doccam
