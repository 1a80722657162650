#include "page/search/region_candidates.h"

#include "page/search/refined_sides.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace doccam::page {
namespace {

// Those that nearly have its direction, from a little inside of it to farther outside, the best
// supported first.
std::vector<const SupportedLine*> linesBeside(cv::Point2d from, cv::Point2d to,
                                              const std::vector<SupportedLine>& lines) {
    constexpr double kNearlyParallel = 0.985; // 10 degrees
    constexpr double kInside = 8;
    constexpr double kOutside = 45;
    constexpr std::size_t kMost = 5;
    const Line side = Line::through(from, to);
    std::vector<std::pair<double, const SupportedLine*>> beside;
    for (const SupportedLine& line : lines) {
        const double cosine = line.normal().dot(side.normal());
        if (std::abs(cosine) < kNearlyParallel) {
            continue;
        }
        const cv::Point2d middle = (from + to) / 2;
        const double inwards = ((line.distance() - middle.dot(line.normal())) / cosine);
        if (line.isBorder() ? std::abs(inwards) < kInside
                            : inwards > -kOutside && inwards < kInside) {
            const double one = line.along(from);
            const double other = line.along(to);
            beside.emplace_back(line.support(std::min(one, other), std::max(one, other)), &line);
        }
    }
    std::sort(beside.rbegin(), beside.rend());
    beside.resize(std::min(beside.size(), kMost));
    std::vector<const SupportedLine*> best;
    best.reserve(beside.size());
    for (const auto& one : beside) {
        best.push_back(one.second);
    }
    return best;
}

// Those with one of the lines at each side.
std::vector<Candidate> combinations(const std::array<std::vector<const SupportedLine*>, 4>& sides,
                                    cv::Size picture) {
    constexpr double kLeastSupport = 0.3;
    constexpr int kMaximumBorders = 2; // where a corner lies outside
    std::vector<Candidate> found;
    for (const SupportedLine* const first : sides[0]) {
        for (const SupportedLine* const second : sides[1]) {
            for (const SupportedLine* const third : sides[2]) {
                for (const SupportedLine* const fourth : sides[3]) {
                    const Candidate candidate =
                        candidateOf({first, second, third, fourth}, picture, kMaximumBorders);
                    if (candidate.support.least >= kLeastSupport) {
                        found.push_back(candidate);
                    }
                }
            }
        }
    }
    return found;
}

} // namespace

std::vector<Candidate> candidatesAround(const Corners& region,
                                        const std::vector<SupportedLine>& lines,
                                        const Evidence& evidence) {
    constexpr std::size_t kMaximum = 6;
    constexpr int kReach = 10; // to where the sides may be, since a region is less exact than lines
    std::array<std::vector<const SupportedLine*>, 4> sides;
    for (std::size_t i = 0; i < 4; ++i) {
        sides[i] = linesBeside(region[i], region[(i + 1) % 4], lines);
    }
    std::vector<Candidate> candidates =
        mostPromising(combinations(sides, evidence.colour.size()), kMaximum);
    for (std::size_t i = 0, count = candidates.size(); i < count; ++i) {
        candidates.push_back(withRefinedSides(candidates[i].corners, evidence));
    }
    candidates.push_back(withRefinedSides(region, evidence, kReach));
    return candidates;
}

} // namespace doccam::page
