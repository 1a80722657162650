#include "page/search/candidate.h"

#include "page/quadrilateral.h"

#include <algorithm>
#include <cmath>

namespace doccam::page {
namespace {

constexpr double kLeastArea = 0.015;  // of the picture
constexpr double kMargin = 0.04;      // of the picture, to where a sheet may go on
constexpr double kMarginOfCut = 0.35; // the same of a cut one

// Of the sides that are not a border.
Support supportOf(const std::array<const SupportedLine*, 4>& lines, const Corners& corners) {
    constexpr double kAtCorner = 0.12; // of the side
    Support support;
    support.least = 1;
    double sides = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const SupportedLine& line = *lines[i];
        if (line.isBorder()) {
            continue;
        }
        const double here = line.along(corners[i]);
        const double there = line.along(corners[(i + 1) % 4]);
        const double from = std::min(here, there);
        const double to = std::max(here, there);
        const double length = kAtCorner * (to - from);
        const double along = line.support(from, to);
        ++sides;
        support.mean += along;
        support.least = std::min(support.least, along);
        support.oneSided += line.oneSided(from, to);
        support.beyond += line.supportBeyond(from, to);
        support.corners += (line.support(from, from + length) + line.support(to - length, to)) / 2;
    }
    for (double* const sum :
         {&support.mean, &support.oneSided, &support.beyond, &support.corners}) {
        *sum /= sides;
    }
    return support;
}

// Whether one side is a border and the opposite one is or nearly is the other: a stripe of the
// desk.
bool isStrip(const std::array<const SupportedLine*, 4>& around, const Corners& corners,
             cv::Size picture) {
    constexpr double kAcross = 0.95; // of the picture
    constexpr double kLong = 3;      // times its width
    for (std::size_t i = 0; i < 4; ++i) {
        const SupportedLine& side = *around[i];
        if (!side.isBorder()) {
            continue;
        }
        const double extent = side.normal().x != 0 ? picture.width : picture.height;
        const auto depth = [&](cv::Point2d corner) {
            return std::abs(corner.dot(side.normal()) - side.distance());
        };
        const cv::Point2d far = corners[(i + 2) % 4];
        const cv::Point2d farther = corners[(i + 3) % 4];
        if (around[(i + 2) % 4]->isBorder() ||
            (std::min(depth(far), depth(farther)) > kAcross * extent &&
             depth(far) > kLong * cv::norm(far - farther))) {
            return true;
        }
    }
    return false;
}

double promiseOf(const Candidate& candidate) {
    constexpr double kOfCut = 0.15; // many lines meet a border, and few of them end there
    const Support& support = candidate.support;
    return 0.3 * support.mean + 0.3 * support.least + 0.2 * support.oneSided +
           0.2 * support.corners - 0.5 * support.beyond - (candidate.cut ? kOfCut : 0);
}

struct Promising {
    double promise;
    const Candidate* candidate;
};

bool isSame(const Candidate& one, const Candidate& other) {
    constexpr double kNear = 5;
    const cv::Point2d apart = middleOf(one.corners) - middleOf(other.corners);
    return std::abs(apart.x) < kNear && std::abs(apart.y) < kNear &&
           distanceBetween(one.corners, other.corners) < kNear;
}

} // namespace

double asSides(double along, double oneSided, double beyond) {
    return 0.6 * along + 0.4 * oneSided - 0.6 * beyond;
}

double asSides(const Support& support) {
    return asSides(support.mean, support.oneSided, support.beyond);
}

Candidate candidateOf(const std::array<const SupportedLine*, 4>& around, cv::Size picture,
                      int maximumBorders) {
    Candidate candidate;
    int borders = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        candidate.corners[i] = around[(i + 3) % 4]->meet(*around[i]);
        borders += around[i]->isBorder() ? 1 : 0;
    }
    candidate.cut = borders > 0;
    if (borders <= maximumBorders && !isStrip(around, candidate.corners, picture) &&
        isPlausible(candidate.corners, picture, kLeastArea,
                    candidate.cut ? kMarginOfCut : kMargin)) {
        candidate.support = supportOf(around, candidate.corners);
    }
    return candidate;
}

std::vector<Candidate> mostPromising(std::vector<Candidate> candidates, std::size_t maximum) {
    constexpr std::size_t kCompared = 10; // of those kept, to leave out similar ones
    std::vector<Promising> found;
    found.reserve(candidates.size());
    for (const Candidate& candidate : candidates) {
        found.push_back({promiseOf(candidate), &candidate});
    }
    const std::size_t compared = std::min(found.size(), kCompared * maximum);
    std::partial_sort(
        found.begin(), found.begin() + static_cast<std::ptrdiff_t>(compared), found.end(),
        [](const Promising& one, const Promising& other) { return one.promise > other.promise; });
    found.resize(compared);
    std::vector<Candidate> kept;
    for (const Promising& one : found) {
        if (kept.size() >= maximum) {
            break;
        }
        Candidate candidate = *one.candidate;
        candidate.corners = clockwise(candidate.corners);
        if (std::none_of(kept.begin(), kept.end(),
                         [&](const Candidate& other) { return isSame(candidate, other); })) {
            kept.push_back(candidate);
        }
    }
    return kept;
}

} // namespace doccam::page
