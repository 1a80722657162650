#include "page/quadrilateral.h"

#include <algorithm>
#include <cmath>

namespace doccam::page {
namespace {

double turnAt(const Corners& corners, std::size_t i) {
    const cv::Point2d before = corners[i] - corners[(i + 3) % 4];
    const cv::Point2d after = corners[(i + 1) % 4] - corners[i];
    const double lengths = cv::norm(before) * cv::norm(after);
    return lengths > 0 ? before.cross(after) / lengths : 0;
}

} // namespace

Corners clockwise(const Corners& corners) {
    Corners ordered = corners;
    if (areaOf(ordered) < 0) {
        std::reverse(ordered.begin(), ordered.end());
    }
    const auto first =
        std::min_element(ordered.begin(), ordered.end(), [](cv::Point2d one, cv::Point2d other) {
            return one.x + one.y < other.x + other.y;
        });
    std::rotate(ordered.begin(), first, ordered.end());
    return ordered;
}

double areaOf(const Corners& corners) {
    double twice = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        twice += corners[i].cross(corners[(i + 1) % 4]);
    }
    return twice / 2;
}

bool isConvex(const Corners& corners) {
    const double first = turnAt(corners, 0);
    return turnAt(corners, 1) * first > 0 && turnAt(corners, 2) * first > 0 &&
           turnAt(corners, 3) * first > 0;
}

cv::Point2d middleOf(const Corners& corners) {
    return (corners[0] + corners[1] + corners[2] + corners[3]) / 4.0;
}

bool contains(const Corners& corners, cv::Point2d place) {
    for (std::size_t i = 0; i < 4; ++i) {
        const cv::Point2d side = corners[(i + 1) % 4] - corners[i];
        if (side.cross(place - corners[i]) < 0) {
            return false;
        }
    }
    return true;
}

bool isPlausible(const Corners& corners, cv::Size picture, double leastArea, double margin) {
    constexpr double kSharpest = 0.7; // the sine of 45 and of 135 degrees
    const double across = picture.width * margin;
    const double down = picture.height * margin;
    for (const cv::Point2d corner : corners) {
        if (corner.x < -across || corner.y < -down || corner.x > picture.width + across ||
            corner.y > picture.height + down) {
            return false;
        }
    }
    if (std::abs(areaOf(corners)) < leastArea * picture.area() || !isConvex(corners)) {
        return false;
    }
    for (std::size_t i = 0; i < 4; ++i) {
        if (std::abs(turnAt(corners, i)) < kSharpest) {
            return false;
        }
    }
    return true;
}

double distanceBetween(const Corners& one, const Corners& other) {
    double largest = 0;
    for (const cv::Point2d corner : one) {
        double nearest = 1e9;
        for (const cv::Point2d there : other) {
            nearest = std::min(nearest, cv::norm(corner - there));
        }
        largest = std::max(largest, nearest);
    }
    return largest;
}

} // namespace doccam::page
