// The smallest rectangle, at any angle, around an outline.
#pragma once

#include <opencv2/core/types.hpp>

#include <array>
#include <vector>

namespace doccam {

// The rectangle of smallest area around the contour's points. Its angle lies in -90 to 0 degrees,
// both included; width runs along the angle, height at right angles to it. The result does not
// depend on where the contour starts. A contour on one line gives a box without extent at its first
// point, an empty one a box without extent at the origin. Any thread.
cv::RotatedRect minAreaRectangle(const std::vector<cv::Point>& contour);

// The box's corners, clockwise as displayed. The edge from the first to the second is as long as
// the box is high.
std::array<cv::Point2f, 4> boxCorners(const cv::RotatedRect& box);

} // namespace doccam
