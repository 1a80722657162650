#include "docimage/sheet/min_area_rectangle.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

// OpenCV's angle and first corner differ from version to version, which would turn pages sideways.
// Here they follow from single precision and a fixed order of the vertices.
namespace doccam {
namespace {

bool liesFurtherLeft(cv::Point a, cv::Point b) {
    return a.x < b.x || (a.x == b.x && a.y < b.y);
}

// Whether the path a-b-c turns left, as displayed.
bool bendsLeft(cv::Point a, cv::Point b, cv::Point c) {
    const std::int64_t cross =
        std::int64_t{b.x - a.x} * (c.y - a.y) - std::int64_t{b.y - a.y} * (c.x - a.x);
    return cross < 0;
}

// Appends next to the chain that starts at hull[begin], removing points that become interior.
void append(std::vector<cv::Point>& hull, std::size_t begin, cv::Point next) {
    while (hull.size() >= begin + 2 && !bendsLeft(hull[hull.size() - 2], hull.back(), next)) {
        hull.pop_back();
    }
    hull.push_back(next);
}

constexpr std::size_t kFewestVertices = 3;

// The direction of the next side, a quarter turn further.
cv::Point2f nextSide(cv::Point2f direction) {
    return {-direction.y, direction.x};
}

cv::Point2f previousSide(cv::Point2f direction) {
    return {direction.y, -direction.x};
}

float dot(cv::Point2f a, cv::Point2f b) {
    return a.x * b.x + a.y * b.y;
}

double lengthOf(cv::Point2f side) {
    const double x = side.x;
    const double y = side.y;
    return std::sqrt(x * x + y * y);
}

// The first vertex, the leftmost, decides ties between equally small rectangles.
void measureEdges(const std::vector<cv::Point>& corners, HullEdges& hull) {
    hull.vertices.assign(corners.begin(), corners.end());
    hull.edges.clear();
    hull.inverseLengths.clear();
    for (std::size_t i = 0; i < hull.size(); ++i) {
        hull.edges.push_back(hull.vertices[hull.after(i)] - hull.vertices[i]);
        hull.inverseLengths.push_back(static_cast<float>(1.0 / lengthOf(hull.edges.back())));
    }
}

// +1 or -1: the direction of rotation of the vertices.
float orientation(const HullEdges& hull) {
    cv::Point2f previous = hull.edges.back();
    for (const cv::Point2f edge : hull.edges) {
        const double turn = previous.cross(edge);
        if (turn != 0) {
            return turn > 0 ? 1.0F : -1.0F;
        }
        previous = edge;
    }
    return 1.0F;
}

// The vertices that touch the rectangle's four sides.
using Supports = std::array<std::size_t, 4>;

template <typename Before>
std::size_t first(const HullEdges& hull, Before before) {
    const auto found = std::min_element(hull.vertices.begin(), hull.vertices.end(), before);
    return static_cast<std::size_t>(found - hull.vertices.begin());
}

Supports uprightSupports(const HullEdges& hull) {
    using Point = cv::Point2f;
    return {first(hull, [](Point a, Point b) { return a.y < b.y; }),
            first(hull, [](Point a, Point b) { return a.x > b.x; }),
            first(hull, [](Point a, Point b) { return a.y > b.y; }),
            first(hull, [](Point a, Point b) { return a.x < b.x; })};
}

// The side that needs the smallest turn to align with its vertex's edge.
std::size_t nearestSide(const HullEdges& hull, const Supports& supports, cv::Point2f base) {
    std::size_t nearest = 0;
    float largestCosine = 0;
    for (std::size_t side = 0; side < supports.size(); ++side) {
        const std::size_t vertex = supports[side];
        const float cosine = dot(base, hull.edges[vertex]) * hull.inverseLengths[vertex];
        if (side == 0 || cosine > largestCosine) {
            nearest = side;
            largestCosine = cosine;
        }
        base = nextSide(base);
    }
    return nearest;
}

cv::Point2f baseAlong(const HullEdges& hull, std::size_t vertex, std::size_t side) {
    cv::Point2f direction = hull.edges[vertex] * hull.inverseLengths[vertex];
    for (std::size_t back = 0; back < side; ++back) {
        direction = previousSide(direction);
    }
    return direction;
}

struct Enclosure {
    cv::Point2f base;
    float width = 0;
    float height = 0;
    cv::Point2f top;
    cv::Point2f left;

    float area() const { return width * height; }
};

Enclosure enclosureOf(const HullEdges& hull, const Supports& supports, cv::Point2f base) {
    const auto vertex = [&](std::size_t side) { return hull.vertices[supports[side]]; };
    return {base, dot(vertex(1) - vertex(3), base), dot(vertex(2) - vertex(0), nextSide(base)),
            vertex(0), vertex(3)};
}

// Rotating calipers: turns the rectangle about the hull. Of equal areas the last wins.
Enclosure smallestEnclosure(const HullEdges& hull) {
    Supports supports = uprightSupports(hull);
    cv::Point2f base(orientation(hull), 0);
    Enclosure smallest;
    float smallestArea = std::numeric_limits<float>::max();
    for (std::size_t round = 0; round < hull.size(); ++round) {
        const std::size_t side = nearestSide(hull, supports, base);
        base = baseAlong(hull, supports[side], side);
        supports[side] = hull.after(supports[side]);
        const Enclosure enclosure = enclosureOf(hull, supports, base);
        if (enclosure.area() <= smallestArea) {
            smallest = enclosure;
            smallestArea = enclosure.area();
        }
    }
    return smallest;
}

// Single-precision product, double quotient: other orders differ in the last bit.
float inDegrees(float radians) {
    return static_cast<float>(static_cast<double>(radians * 180.0F) / CV_PI);
}

cv::RotatedRect asBox(const Enclosure& smallest) {
    const cv::Point2f base = smallest.base;
    const float along = dot(base, smallest.left);
    const float across = dot(nextSide(base), smallest.top);
    const float scale = 1.0F / dot(base, base);
    const cv::Point2f corner((along * base.x - across * base.y) * scale,
                             (base.x * across + base.y * along) * scale);
    const cv::Point2f widthSide = base * smallest.width;
    const cv::Point2f heightSide = nextSide(base) * smallest.height;
    const double radians = std::atan2(widthSide.y, static_cast<double>(widthSide.x));
    return {corner + (widthSide + heightSide) * 0.5F,
            {static_cast<float>(lengthOf(widthSide)), static_cast<float>(lengthOf(heightSide))},
            inDegrees(static_cast<float>(radians))};
}

} // namespace

void findConvexHull(std::vector<cv::Point>& points, std::vector<cv::Point>& hull) {
    std::sort(points.begin(), points.end(), liesFurtherLeft);
    points.erase(std::unique(points.begin(), points.end()), points.end());
    hull.clear();
    if (points.size() < 3) {
        hull = points;
        return;
    }
    for (const cv::Point point : points) {
        append(hull, 0, point);
    }
    const std::size_t back = hull.size() - 1;
    for (auto point = points.rbegin() + 1; point != points.rend(); ++point) {
        append(hull, back, *point);
    }
    hull.pop_back(); // the first point again
}

cv::RotatedRect MinAreaFit::around(std::span<const cv::Point> contour) {
    if (contour.empty()) {
        return {};
    }
    points_.assign(contour.begin(), contour.end());
    findConvexHull(points_, corners_);
    if (corners_.size() < kFewestVertices) {
        return {cv::Point2f(contour.front()), {}, 0};
    }
    measureEdges(corners_, hull_);
    return asBox(smallestEnclosure(hull_));
}

std::array<cv::Point2f, 4> boxCorners(const cv::RotatedRect& box) {
    std::array<cv::Point2f, 4> corners;
    box.points(corners.data());
    return corners;
}

} // namespace doccam
