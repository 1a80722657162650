#include "codes/corners.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace doccam::codes {
namespace {

std::vector<cv::Point2f> outlineOf(const Corners& corners) {
    return {corners.begin(), corners.end()};
}

} // namespace

cv::Rect2d boundsOf(const Corners& corners) {
    cv::Point2d low = corners[0];
    cv::Point2d high = corners[0];
    for (const cv::Point2d corner : corners) {
        low = {std::min(low.x, corner.x), std::min(low.y, corner.y)};
        high = {std::max(high.x, corner.x), std::max(high.y, corner.y)};
    }
    return {low, high};
}

cv::Point2d middleOf(const Corners& corners) {
    return (corners[0] + corners[1] + corners[2] + corners[3]) / 4;
}

bool contains(const Corners& corners, cv::Point2d place, double margin) {
    return cv::pointPolygonTest(outlineOf(corners), place, true) >= -margin;
}

Corners rectangleAround(const std::vector<cv::Point2d>& points, cv::Point2d reading) {
    const std::vector<cv::Point2f> cloud(points.begin(), points.end());
    cv::Point2f around[4];
    cv::minAreaRect(cloud).points(around); // clockwise
    std::size_t first = 0;
    double best = -1e300;
    for (std::size_t i = 0; i < 4; ++i) {
        const cv::Point2f side = around[(i + 1) % 4] - around[i];
        const double length = std::max(cv::norm(side), 1e-9);
        const double along = (side.x * reading.x + side.y * reading.y) / length;
        if (along > best) {
            best = along;
            first = i;
        }
    }
    Corners corners;
    for (std::size_t i = 0; i < 4; ++i) {
        corners[i] = around[(first + i) % 4];
    }
    return corners;
}

bool areOfOneCode(const Corners& one, const Corners& other) {
    constexpr double kMargin = 4; // pixels
    return contains(one, middleOf(other), kMargin) || contains(other, middleOf(one), kMargin);
}

bool doOverlap(const Corners& one, const Corners& other) {
    constexpr double kPart = 0.3;
    const cv::Rect2d first = boundsOf(one);
    const cv::Rect2d second = boundsOf(other);
    return (first & second).area() > kPart * std::min(first.area(), second.area());
}

bool areStacked(const Corners& one, const Corners& other) {
    constexpr double kGap = 0.06;
    constexpr double kPart = 0.6;
    const cv::Point2d along = one[1] - one[0];
    const double length = std::max(cv::norm(along), 1.0);
    const cv::Point2d side = along / length;
    const cv::Point2d down(-side.y, side.x);
    const auto span = [](const Corners& corners, cv::Point2d axis) {
        double low = corners[0].dot(axis);
        double high = low;
        for (const cv::Point2d corner : corners) {
            low = std::min(low, corner.dot(axis));
            high = std::max(high, corner.dot(axis));
        }
        return std::pair(low, high);
    };
    const auto common = [&](cv::Point2d axis) {
        const auto [low, high] = span(one, axis);
        const auto [otherLow, otherHigh] = span(other, axis);
        return std::min(high, otherHigh) - std::max(low, otherLow);
    };
    return common(side) > kPart * length && common(down) > -kGap * length;
}

} // namespace doccam::codes
