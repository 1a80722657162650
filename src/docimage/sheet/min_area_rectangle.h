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
    // Its angle is -90 to 0 degrees, both inclusive, wherever the contour starts. A collinear
    // contour gives an empty box at its first point, an empty one at the origin.
    cv::RotatedRect around(std::span<const cv::Point> contour);

  private:
    std::vector<cv::Point> points_;
    std::vector<cv::Point> corners_;
    HullEdges hull_;
};

// Reorders points, and stores the corners of their convex hull in hull: from the leftmost, of
// several the highest, along the bottom and back, no three collinear. Fewer than three points stay.
void findConvexHull(std::vector<cv::Point>& points, std::vector<cv::Point>& hull);

// The box's corners, clockwise as displayed. The first edge has the length of the box's height.
std::array<cv::Point2f, 4> boxCorners(const cv::RotatedRect& box);

} // namespace doccam
