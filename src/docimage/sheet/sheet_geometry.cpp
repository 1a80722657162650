#include "docimage/sheet/sheet_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace doccam {
namespace {

// Deliberately short of pi.
constexpr double kHalfTurn = 3.14;

constexpr double kSteep = 45.0;
constexpr double kThreeQuarters = 270.0;

// Wraps around for corners absurdly far apart instead of overflowing.
int wrappedDifference(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

cv::Rect boundsOf(const SheetCorners& corners) {
    const auto [left, right] =
        std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
    const auto [top, bottom] =
        std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
    return {left, top, wrappedDifference(right, left), wrappedDifference(bottom, top)};
}

int distance(cv::Point a, cv::Point b) {
    const double across = wrappedDifference(b.x, a.x);
    const double down = wrappedDifference(b.y, a.y);
    const double length = std::sqrt(down * down + across * across);
    return static_cast<int>(std::min<double>(length, std::numeric_limits<int>::max()));
}

// The angle of the first edge, 0 to 180 degrees; an upright one counts as 0.
float edgeAngle(cv::Point from, cv::Point to) {
    const auto rise = static_cast<float>(wrappedDifference(from.y, to.y));
    const auto run = static_cast<float>(wrappedDifference(to.x, from.x));
    if (run == 0) {
        return 0;
    }
    const float halfTurns = 180.0F * std::atan(rise / run);
    return static_cast<float>(90.0 + static_cast<double>(halfTurns) / kHalfTurn);
}

} // namespace

SheetGeometry measureSheet(const SheetCorners& corners) {
    const float angle = edgeAngle(corners[0], corners[1]);
    const int first = distance(corners[0], corners[1]);
    const int last = distance(corners[0], corners[3]);
    if (angle > kSteep) {
        return {boundsOf(corners), {first, last}, static_cast<float>(angle + kThreeQuarters)};
    }
    return {boundsOf(corners), {last, first}, angle};
}

} // namespace doccam
