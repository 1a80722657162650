#include "docimage/sheet/convex_hull.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

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

} // namespace doccam
