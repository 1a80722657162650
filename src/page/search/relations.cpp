#include "page/search/relations.h"

#include "page/quadrilateral.h"

#include <algorithm>
#include <cmath>

namespace doccam::page {
namespace {

// How many corners of one are, within near, corners of the other.
std::ptrdiff_t sharedCorners(const Corners& one, const Corners& other, double near) {
    return std::count_if(one.begin(), one.end(), [&](cv::Point2d corner) {
        return std::any_of(other.begin(), other.end(),
                           [&](cv::Point2d there) { return cv::norm(corner - there) < near; });
    });
}

// The corners of one in the order of the nearest ones of other.
Corners matched(const Corners& one, const Corners& other) {
    Corners ordered;
    for (std::size_t i = 0; i < 4; ++i) {
        ordered[i] = *std::min_element(one.begin(), one.end(), [&](cv::Point2d a, cv::Point2d b) {
            return cv::norm(a - other[i]) < cv::norm(b - other[i]);
        });
    }
    return ordered;
}

} // namespace

bool overlaps(const Corners& one, const Corners& other) {
    return contains(other, middleOf(one)) || contains(one, middleOf(other));
}

bool isVariant(const Corners& one, const Corners& other) {
    constexpr double kLeast = 0.85; // of the area
    const double ratio = areaOf(one) / areaOf(other);
    return ratio > kLeast && ratio < 1 / kLeast && overlaps(one, other);
}

bool encloses(const Corners& outer, const Corners& inner) {
    constexpr double kSlack = 5; // pixels of the reduced picture
    const cv::Point2d middle = middleOf(inner);
    return std::all_of(inner.begin(), inner.end(), [&](cv::Point2d corner) {
        const cv::Point2d inwards = middle - corner;
        return contains(outer, corner + inwards * (kSlack / cv::norm(inwards)));
    });
}

bool completes(const Corners& rest, const Corners& part, const Corners& whole) {
    constexpr double kSame = 0.02; // of the area
    constexpr double kNear = 3;
    return std::abs(areaOf(rest) + areaOf(part) - areaOf(whole)) < kSame * areaOf(whole) &&
           encloses(whole, rest) && !overlaps(part, rest) && sharedCorners(part, rest, kNear) == 2;
}

bool sharesSideInside(const Corners& inner, const Corners& outer) {
    constexpr double kNear = 6;
    constexpr double kSmaller = 0.8;
    return areaOf(inner) < kSmaller * areaOf(outer) && encloses(outer, inner) &&
           sharedCorners(inner, outer, kNear) == 2;
}

bool areSideBySide(const Corners& one, const Corners& other, const Evidence& evidence) {
    constexpr double kLeast = 0.8; // of the area: others do not look like one sheet
    const double ratio = areaOf(one) / areaOf(other);
    if (ratio < kLeast || ratio > 1 / kLeast || overlaps(one, other)) {
        return false;
    }
    const cv::Rect picture({}, evidence.colour.size());
    const auto colourAt = [&](cv::Point2d place) {
        const cv::Point pixel(place);
        return picture.contains(pixel) ? evidence.colour.at<cv::Vec3f>(pixel) : cv::Vec3f();
    };
    // The side of one that is nearest to the other, and its counterpart.
    std::size_t side = 0;
    const auto gap = [&](std::size_t i) {
        const cv::Point2d middle = (one[i] + one[(i + 1) % 4]) * 0.5;
        return cv::norm(middle - middleOf(other));
    };
    for (std::size_t i = 1; i < 4; ++i) {
        side = gap(i) < gap(side) ? i : side;
    }
    const Corners there = matched(other, {one[side], one[(side + 1) % 4], one[side], one[side]});
    const cv::Point2d along = one[(side + 1) % 4] - one[side];
    const cv::Point2d outwards = cv::Point2d(along.y, -along.x) / cv::norm(along);
    constexpr double kLeastGap = 5; // pixels of the reduced picture
    constexpr int kSamples = 20;
    const double apart = std::min((there[0] - one[side]).dot(outwards),
                                  (there[1] - one[(side + 1) % 4]).dot(outwards));
    if (apart < kLeastGap) {
        return false;
    }
    int desk = 0;
    for (int i = 0; i < kSamples; ++i) {
        const double at = (i + 0.5) / kSamples;
        const cv::Point2d here = one[side] + along * at;
        const cv::Point2d opposite = there[0] + (there[1] - there[0]) * at;
        const cv::Vec3f between = colourAt((here + opposite) * 0.5);
        const cv::Vec3f paper = colourAt(here - outwards * 4.0);
        const cv::Point2d past = one[side] - along * (8 / cv::norm(along)) + outwards * apart / 2;
        const cv::Vec3f around = colourAt(past);
        desk += cv::norm(between - around) < 0.4 * cv::norm(between - paper) ? 1 : 0;
    }
    return desk > 0.8 * kSamples;
}

} // namespace doccam::page
