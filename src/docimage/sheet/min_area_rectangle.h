// The smallest rectangle, at any angle, around an outline.
#pragma once

#include <opencv2/core/types.hpp>

#include <array>
#include <span>
#include <vector>

namespace doccam {

// Convex vertices, and for each the edge that leaves it and the inverse of that edge's length.
struct HullEdges {
    std::vector<cv::Point2f> vertices;
    std::vector<cv::Point2f> edges;
    std::vector<float> inverseLengths;

    std::size_t size() const { return vertices.size(); }

    std::size_t after(std::size_t vertex) const { return vertex + 1 == size() ? 0 : vertex + 1; }
};

// Finds smallest rectangles around contours, reusing its memory. Not thread-safe.
class MinAreaFit {
  public:
    // The rectangle of smallest area around the contour's points. Its angle is -90 to 0 degrees,
    // both inclusive; width runs along the angle, height perpendicular to it. The result does not
    // depend on where the contour starts. A collinear contour gives an empty box at its first
    // point, an empty one an empty box at the origin.
    cv::RotatedRect around(std::span<const cv::Point> contour);

  private:
    std::vector<cv::Point> points_;
    std::vector<cv::Point> corners_;
    HullEdges hull_;
};

// The same for a single contour. Any thread.
cv::RotatedRect minAreaRectangle(const std::vector<cv::Point>& contour);

// The box's corners, clockwise as displayed. The first edge has the length of the box's height.
std::array<cv::Point2f, 4> boxCorners(const cv::RotatedRect& box);

} // namespace doccam
