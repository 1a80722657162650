#include "page/search/refined_sides.h"

#include "page/line.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace doccam::page {
namespace {

// An edge pixel beside a side.
struct Place {
    double along;
    double across;
};

std::vector<Place> edgesBeside(const Line& line, double from, double to, int reach,
                               const cv::Mat& directions) {
    constexpr int kNearAngle = 12;
    const int angle = cvRound(
        cv::fastAtan2(static_cast<float>(line.normal().y), static_cast<float>(line.normal().x)));
    const cv::Rect picture(0, 0, directions.cols, directions.rows);
    std::vector<Place> places;
    for (int step = 0; step <= static_cast<int>(to - from); ++step) {
        const double along = from + step;
        for (int across = -reach; across <= reach; ++across) {
            const cv::Point pixel(line.at(along) + line.normal() * static_cast<double>(across));
            const int there = picture.contains(pixel) ? directions.at<short>(pixel) : kNoEdge;
            // Either way over the edge.
            const int turn = (there - angle + 720) % 180;
            if (there != kNoEdge && std::min(turn, 180 - turn) <= kNearAngle) {
                places.push_back({along, static_cast<double>(across)});
            }
        }
    }
    return places;
}

struct Offset {
    double start = 0;
    double slope = 0;

    double at(double along) const { return start + slope * along; }
};

double supportOf(const Offset& offset, const std::vector<Place>& places) {
    double support = 0;
    for (const Place& place : places) {
        support += std::max(0.0, 1 - std::abs(place.across - offset.at(place.along)));
    }
    return support;
}

// The best of those through two of the places that lie far enough apart.
Offset bestOffset(const std::vector<Place>& places, double least) {
    constexpr std::size_t kTried = 40;
    const std::size_t step = std::max<std::size_t>(1, places.size() / kTried);
    Offset best;
    double bestSupport = supportOf(best, places);
    for (std::size_t i = 0; i < places.size(); i += step) {
        for (std::size_t j = i + 1; j < places.size(); j += step) {
            const double apart = places[j].along - places[i].along;
            if (apart < least) {
                continue;
            }
            const double slope = (places[j].across - places[i].across) / apart;
            const Offset offset{places[i].across - slope * places[i].along, slope};
            if (const double support = supportOf(offset, places); support > bestSupport) {
                bestSupport = support;
                best = offset;
            }
        }
    }
    return best;
}

Line refined(cv::Point2d from, cv::Point2d to, int reach, const Evidence& evidence) {
    constexpr double kOfSide = 1.0 / 3;
    const Line line = Line::through(from, to);
    const double start = std::min(line.along(from), line.along(to));
    const double end = std::max(line.along(from), line.along(to));
    const Offset offset = bestOffset(edgesBeside(line, start, end, reach, evidence.directions),
                                     kOfSide * (end - start));
    return Line::through(line.at(start) + line.normal() * offset.at(start),
                         line.at(end) + line.normal() * offset.at(end));
}

// The border of the picture that the side lies on, or null.
const SupportedLine* borderAt(cv::Point2d from, cv::Point2d to,
                              const std::vector<SupportedLine>& borders) {
    constexpr double kNear = 8;
    const auto isNear = [&](const SupportedLine& border) {
        const auto offset = [&](cv::Point2d place) {
            return std::abs(place.dot(border.normal()) - border.distance());
        };
        return offset(from) < kNear && offset(to) < kNear;
    };
    const auto border = std::find_if(borders.begin(), borders.end(), isNear);
    return border == borders.end() ? nullptr : &*border;
}

} // namespace

Candidate withRefinedSides(const Corners& about, const Evidence& evidence, int reach) {
    constexpr int kNear = 4;
    constexpr int kTimes = 2; // as the corners move, so do the ends of the sides
    constexpr int kMaximumBorders = 2;
    const std::vector<SupportedLine> borders = bordersOf(evidence.colour.size());
    Corners corners = about;
    std::array<const SupportedLine*, 4> onBorder{};
    for (std::size_t i = 0; i < 4; ++i) {
        onBorder[i] = borderAt(corners[i], corners[(i + 1) % 4], borders);
    }
    std::vector<SupportedLine> sides;
    for (int time = 0; time < kTimes; ++time) {
        sides.clear();
        for (std::size_t i = 0; i < 4; ++i) {
            sides.push_back(onBorder[i] != nullptr
                                ? *onBorder[i]
                                : SupportedLine(refined(corners[i], corners[(i + 1) % 4],
                                                        time == 0 ? reach : kNear, evidence),
                                                evidence));
        }
        for (std::size_t i = 0; i < 4; ++i) {
            corners[i] = sides[(i + 3) % 4].meet(sides[i]);
        }
    }
    return candidateOf({&sides[0], &sides[1], &sides[2], &sides[3]}, evidence.colour.size(),
                       kMaximumBorders);
}

} // namespace doccam::page
