#include "page/search/candidates.h"

#include "page/quadrilateral.h"

#include <algorithm>
#include <cmath>

namespace doccam::page {
namespace {

constexpr double kLeastArea = 0.015; // of the picture
constexpr double kLeastSupport = 0.35;
constexpr double kLeastMeanSupport = 0.5;

double cosine(const Line& one, const Line& other) {
    return std::abs(one.normal().dot(other.normal()));
}

// Two lines that may be opposite sides.
struct Pair {
    const SupportedLine* one;
    const SupportedLine* other;
};

std::vector<Pair> oppositePairs(const std::vector<SupportedLine>& lines, cv::Size picture) {
    constexpr double kParallelEnough = 0.82; // 35 degrees
    const double apart = 0.06 * std::min(picture.width, picture.height);
    std::vector<Pair> pairs;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        for (std::size_t j = i + 1; j < lines.size(); ++j) {
            const Line& other = lines[j];
            const cv::Point2d middle(picture.width / 2.0, picture.height / 2.0);
            const cv::Point2d foot = lines[i].at(lines[i].along(middle));
            const double distance = std::abs(foot.dot(other.normal()) - other.distance());
            if (cosine(lines[i], other) > kParallelEnough && distance > apart &&
                !(lines[i].isBorder() && lines[j].isBorder())) {
                pairs.push_back({&lines[i], &lines[j]});
            }
        }
    }
    return pairs;
}

struct Side {
    const SupportedLine* line;
    double from;
    double to;
};

// Edges that go on beyond both ends are of a pattern or of the desk.
double beyond(const Side& side) {
    const double length = 0.12 * (side.to - side.from);
    return side.line->isBorder() ? 0
                                 : std::min(side.line->support(side.from - length, side.from),
                                            side.line->support(side.to, side.to + length));
}

// The support of all sides, or 0 if one has too little.
double supportOf(const std::array<Side, 4>& sides) {
    double sum = 0;
    double least = 1;
    double outside = 0;
    for (const Side& side : sides) {
        const double support = side.line->support(side.from, side.to);
        sum += support / 4;
        least = std::min(least, support);
        outside += beyond(side) / 4;
    }
    if (least < kLeastSupport || sum < kLeastMeanSupport) {
        return 0;
    }
    return 0.7 * sum + 0.3 * least - 0.5 * outside;
}

void addCandidate(const Pair& rows, const Pair& columns, cv::Size picture,
                  std::vector<Candidate>& candidates) {
    const std::array<const SupportedLine*, 4> around{rows.one, columns.one, rows.other,
                                                     columns.other};
    std::array<Side, 4> sides{};
    Corners corners;
    int borders = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        corners[i] = around[(i + 3) % 4]->meet(*around[i]);
        borders += around[i]->isBorder() ? 1 : 0;
    }
    constexpr double kMargin = 0.04;
    constexpr double kMarginOfCut = 0.35;
    if (borders > 1 ||
        !isPlausible(corners, picture, kLeastArea, borders > 0 ? kMarginOfCut : kMargin)) {
        return;
    }
    for (std::size_t i = 0; i < 4; ++i) {
        const double from = around[i]->along(corners[i]);
        const double to = around[i]->along(corners[(i + 1) % 4]);
        sides[i] = {around[i], std::min(from, to), std::max(from, to)};
    }
    if (const double support = supportOf(sides); support > 0) {
        candidates.push_back({clockwise(corners), support, borders > 0});
    }
}

// The best, without those that are nearly the same as a better one.
std::vector<Candidate> different(const std::vector<Candidate>& candidates, std::size_t maximum) {
    constexpr double kSame = 5;
    std::vector<Candidate> kept;
    for (const Candidate& candidate : candidates) {
        if (kept.size() >= maximum) {
            break;
        }
        if (std::none_of(kept.begin(), kept.end(), [&](const Candidate& other) {
                return distanceBetween(candidate.corners, other.corners) < kSame;
            })) {
            kept.push_back(candidate);
        }
    }
    return kept;
}

} // namespace

std::vector<Candidate> candidatesOf(const std::vector<SupportedLine>& lines, cv::Size picture,
                                    std::size_t maximum) {
    constexpr double kCrossing = 0.65; // 50 degrees
    const std::vector<Pair> pairs = oppositePairs(lines, picture);
    std::vector<Candidate> candidates;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        for (std::size_t j = i + 1; j < pairs.size(); ++j) {
            if (cosine(*pairs[i].one, *pairs[j].one) < kCrossing &&
                cosine(*pairs[i].other, *pairs[j].other) < kCrossing) {
                addCandidate(pairs[i], pairs[j], picture, candidates);
            }
        }
    }
    std::sort(
        candidates.begin(), candidates.end(),
        [](const Candidate& one, const Candidate& other) { return one.support > other.support; });
    return different(candidates, maximum);
}

} // namespace doccam::page
