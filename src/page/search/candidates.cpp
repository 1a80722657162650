#include "page/search/candidates.h"

#include "page/quadrilateral.h"
#include "page/search/side_table.h"

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace doccam::page {
namespace {

constexpr double kLeastArea = 0.015; // of the picture
constexpr double kLeastSupport = 0.35;
constexpr double kLeastMeanSupport = 0.58;
constexpr double kMarginOfCut = 0.35; // of the picture, to where a cut sheet may go on

// Edges that go on past an end are of a pattern, of the desk, or of the rest of the sheet.
double asSides(double along, double oneSided, double beyond) {
    return 0.6 * along + 0.4 * oneSided - 0.6 * beyond;
}

double asSides(const Support& support) {
    return asSides(support.mean, support.oneSided, support.beyond);
}

struct SideSupport {
    double along;
    double oneSided;
    double before;
    double after;

    double asSide() const { return asSides(along, oneSided, (before + after) / 2); }
};

SideSupport supportOf(const SupportedLine& line, double from, double to) {
    if (line.isBorder()) {
        return {line.support(from, to), line.oneSided(from, to), 0, 0};
    }
    constexpr double kBeside = 0.12; // of the side
    const double length = kBeside * (to - from);
    return {line.support(from, to), line.oneSided(from, to), line.support(from - length, from),
            line.support(to, to + length)};
}

// Where a line meets another.
struct Crossing {
    std::size_t line;
    double at; // along the first
};

// The lines of a picture as sides of quadrilaterals.
class SideSearch {
  public:
    SideSearch(const std::vector<SupportedLine>& lines, cv::Size picture)
      : lines_(lines)
      , picture_(picture)
      , sides_(lines.size(), SideTable(lines.size())) {
        cv::parallel_for_({0, static_cast<int>(lines.size())}, [&](const cv::Range& range) {
            for (int i = range.start; i < range.end; ++i) {
                addSides(static_cast<std::size_t>(i));
            }
        });
    }

    std::vector<Candidate> candidates() const;

  private:
    double cosine(std::size_t one, std::size_t other) const {
        return std::abs(lines_[one].normal().dot(lines_[other].normal()));
    }

    std::vector<Crossing> crossingsOf(std::size_t line) const;
    void addSides(std::size_t line);
    void addCandidates(std::size_t line, std::vector<Candidate>& found) const;
    Candidate candidateOf(const std::array<std::size_t, 4>& around) const;

    const std::vector<SupportedLine>& lines_;
    cv::Size picture_;
    std::vector<SideTable> sides_; // of each line
};

std::vector<Crossing> SideSearch::crossingsOf(std::size_t line) const {
    constexpr double kCrossing = 0.7; // 45 degrees
    const double across = kMarginOfCut * picture_.width;
    const double down = kMarginOfCut * picture_.height;
    std::vector<Crossing> crossings;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (cosine(line, i) > kCrossing) {
            continue;
        }
        const cv::Point2d place = lines_[line].meet(lines_[i]);
        if (place.x > -across && place.y > -down && place.x < picture_.width + across &&
            place.y < picture_.height + down) {
            crossings.push_back({i, lines_[line].along(place)});
        }
    }
    std::sort(crossings.begin(), crossings.end(),
              [](const Crossing& one, const Crossing& other) { return one.at < other.at; });
    return crossings;
}

void SideSearch::addSides(std::size_t line) {
    constexpr double kParallelEnough = 0.82; // 35 degrees
    const double shortest = 0.06 * std::min(picture_.width, picture_.height);
    const std::vector<Crossing> crossings = crossingsOf(line);
    for (auto from = crossings.begin(); from != crossings.end(); ++from) {
        for (auto to = from + 1; to != crossings.end(); ++to) {
            if (to->at - from->at >= shortest && cosine(from->line, to->line) > kParallelEnough &&
                lines_[line].support(from->at, to->at) >= kLeastSupport &&
                supportOf(lines_[line], from->at, to->at).asSide() >= kLeastSupport) {
                sides_[line].add(from->line, to->line);
            }
        }
    }
}

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
        const SideSupport side = supportOf(line, from, to);
        ++sides;
        support.mean += side.along;
        support.least = std::min(support.least, side.along);
        support.oneSided += side.oneSided;
        support.beyond += (side.before + side.after) / 2;
        support.corners += (line.support(from, from + length) + line.support(to - length, to)) / 2;
    }
    for (double* const sum :
         {&support.mean, &support.oneSided, &support.beyond, &support.corners}) {
        *sum /= sides;
    }
    return support;
}

Candidate SideSearch::candidateOf(const std::array<std::size_t, 4>& around) const {
    std::array<const SupportedLine*, 4> lines{};
    Candidate candidate;
    int borders = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        lines[i] = &lines_[around[i]];
        candidate.corners[i] = lines_[around[(i + 3) % 4]].meet(*lines[i]);
        borders += lines[i]->isBorder() ? 1 : 0;
    }
    constexpr double kMargin = 0.04;
    candidate.cut = borders > 0;
    if (borders < 2 && isPlausible(candidate.corners, picture_, kLeastArea,
                                   candidate.cut ? kMarginOfCut : kMargin)) {
        candidate.support = supportOf(lines, candidate.corners);
    }
    return candidate;
}

// Those with this line and three that stand behind it in the list.
void SideSearch::addCandidates(std::size_t line, std::vector<Candidate>& found) const {
    for (std::size_t start = line + 1; start < lines_.size(); ++start) {
        for (std::size_t end = start + 1; end < lines_.size(); ++end) {
            if (!sides_[line].contains(start, end)) {
                continue;
            }
            sides_[start].forEachCommon(sides_[end], line, line, [&](std::size_t opposite) {
                if (sides_[opposite].contains(start, end)) {
                    const Candidate candidate = candidateOf({line, end, opposite, start});
                    if (asSides(candidate.support) >= kLeastMeanSupport) {
                        found.push_back(candidate);
                    }
                }
            });
        }
    }
}

std::vector<Candidate> SideSearch::candidates() const {
    std::vector<std::vector<Candidate>> found(lines_.size());
    cv::parallel_for_({0, static_cast<int>(lines_.size())}, [&](const cv::Range& range) {
        for (int i = range.start; i < range.end; ++i) {
            addCandidates(static_cast<std::size_t>(i), found[static_cast<std::size_t>(i)]);
        }
    });
    std::vector<Candidate> all;
    for (const std::vector<Candidate>& some : found) {
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

// Those worth a closer look first.
double promise(const Candidate& candidate) {
    constexpr double kOfCut = 0.15; // many lines meet a border, and few of them end there
    const Support& support = candidate.support;
    return 0.3 * support.mean + 0.3 * support.least + 0.2 * support.oneSided +
           0.2 * support.corners - 0.5 * support.beyond - (candidate.cut ? kOfCut : 0);
}

struct Promising {
    double promise;
    Candidate candidate;
};

bool isSame(const Candidate& one, const Candidate& other) {
    constexpr double kNear = 5;
    const cv::Point2d apart = middleOf(one.corners) - middleOf(other.corners);
    return std::abs(apart.x) < kNear && std::abs(apart.y) < kNear &&
           distanceBetween(one.corners, other.corners) < kNear;
}

// The best, without those that are nearly the same as a better one.
std::vector<Candidate> different(const std::vector<Promising>& candidates, std::size_t maximum) {
    std::vector<Candidate> kept;
    for (const Promising& promising : candidates) {
        const Candidate& candidate = promising.candidate;
        if (kept.size() >= maximum) {
            break;
        }
        if (std::none_of(kept.begin(), kept.end(),
                         [&](const Candidate& other) { return isSame(candidate, other); })) {
            kept.push_back(candidate);
        }
    }
    return kept;
}

} // namespace

Candidate candidateAt(const Corners& corners, const Evidence& evidence) {
    std::vector<SupportedLine> lines;
    for (std::size_t i = 0; i < 4; ++i) {
        lines.emplace_back(Line::through(corners[i], corners[(i + 1) % 4]), evidence);
    }
    return {corners, supportOf({&lines[0], &lines[1], &lines[2], &lines[3]}, corners)};
}

std::vector<Candidate> candidatesOf(const std::vector<SupportedLine>& lines, cv::Size picture,
                                    std::size_t maximum) {
    constexpr std::size_t kCompared = 10; // of those kept, to leave out similar ones
    std::vector<Promising> found;
    for (const Candidate& candidate : SideSearch(lines, picture).candidates()) {
        found.push_back({promise(candidate), candidate});
    }
    const std::size_t compared = std::min(found.size(), kCompared * maximum);
    std::partial_sort(
        found.begin(), found.begin() + static_cast<std::ptrdiff_t>(compared), found.end(),
        [](const Promising& one, const Promising& other) { return one.promise > other.promise; });
    found.resize(compared);
    for (Promising& one : found) {
        one.candidate.corners = clockwise(one.candidate.corners);
    }
    return different(found, maximum);
}

} // namespace doccam::page
