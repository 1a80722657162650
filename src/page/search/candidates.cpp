#include "page/search/candidates.h"

#include "page/quadrilateral.h"
#include "page/search/side_table.h"

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace doccam::page {
namespace {

constexpr double kLeastSupport = 0.35;
constexpr double kLeastMeanSupport = 0.58;
constexpr double kMarginOfCut = 0.35; // of the picture, to where a cut sheet may go on

bool isSide(const SupportedLine& line, double from, double to) {
    const double along = line.support(from, to);
    return along >= kLeastSupport &&
           asSides(along, line.oneSided(from, to), line.supportBeyond(from, to)) >= kLeastSupport;
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
                isSide(lines_[line], from->at, to->at)) {
                sides_[line].add(from->line, to->line);
            }
        }
    }
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
                    const Candidate candidate = candidateOf(
                        {&lines_[line], &lines_[end], &lines_[opposite], &lines_[start]}, picture_,
                        1);
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

} // namespace

std::vector<Candidate> candidatesOf(const std::vector<SupportedLine>& lines, cv::Size picture,
                                    std::size_t maximum) {
    return mostPromising(SideSearch(lines, picture).candidates(), maximum);
}

} // namespace doccam::page
