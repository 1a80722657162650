#include "page/fit/side_fit.h"

#include "page/fit/curl.h"
#include "page/fit/offset_line.h"
#include "page/fit/side_profiles.h"
#include "page/line.h"
#include "page/quadrilateral.h"

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace doccam::page {
namespace {

constexpr int kProfiles = SideProfiles::kCount;

struct FittedSide {
    Line start; // near its first corner
    Line end;
    double support;
    bool isBorder = false; // of the picture, not an edge
};

// An edge all along a side.
struct SideEdge {
    cv::Vec3f step; // how the colour changes there inwards
    OffsetLine line;
    double support;  // the part of the profiles that show it within tolerance
    double strength; // of those, in levels per pixel
};

std::optional<SideEdge> edgeAlong(const SideProfiles& profiles, const cv::Vec3f& step, int reach,
                                  double tolerance) {
    constexpr double kNear = 1.5;
    constexpr double kStrongest = 8;
    std::vector<SidePoint> points;
    for (int i = 0; i < kProfiles; ++i) {
        if (const auto edge = profiles.edgeOf(i, step, 0, reach)) {
            points.push_back({(i + 0.5) / kProfiles, edge->offset, edge->strength});
        }
    }
    if (points.size() < kProfiles / 4) {
        return std::nullopt;
    }
    std::vector<SidePoint> weighed = points;
    for (SidePoint& point : weighed) {
        point.weight = std::min(point.weight, kStrongest);
    }
    SideEdge edge{step, lineOfMost(weighed, kNear), 0, 0};
    int near = 0;
    for (const SidePoint& point : points) {
        if (std::abs(point.offset - edge.line.at(point.at)) < tolerance) {
            ++near;
            edge.strength += point.weight;
        }
    }
    edge.support = static_cast<double>(near) / kProfiles;
    edge.strength /= std::max(near, 1);
    return edge;
}

// Whether between the edges lies the shadow of paper that begins at the inner one: darkest there,
// and fading into the desk, so that its own edge is less steep.
bool isShadow(const SideProfiles& profiles, const SideEdge& outer, const SideEdge& inner) {
    constexpr double kSteeper = 2;
    constexpr double kNarrowest = 2;
    constexpr double kBeside = 3;
    constexpr int kStride = 8;
    if (inner.strength < kSteeper * outer.strength || inner.support < outer.support / 2 ||
        inner.line.at(0.5) - outer.line.at(0.5) < kNarrowest) {
        return false;
    }
    double darkerThanDesk = 0;
    double darkerThanPaper = 0;
    for (int i = 0; i < kProfiles; i += kStride) {
        const double at = (i + 0.5) / kProfiles;
        const auto lightness = [&](double offset) {
            const cv::Vec3f colour = profiles.colourAt(i, offset);
            return colour[0] + colour[1] + colour[2];
        };
        const double between = lightness(inner.line.at(at) - kBeside);
        darkerThanDesk += lightness(outer.line.at(at) - kBeside) - between;
        darkerThanPaper += lightness(inner.line.at(at) + kBeside) - between;
    }
    return darkerThanDesk > 0 && darkerThanPaper > 0;
}

std::optional<FittedSide> fitSide(const cv::Mat& picture, cv::Point2d from, cv::Point2d to,
                                  int reach, double tolerance) {
    constexpr int kNoShadow = 6; // a side known so well is that of the paper
    constexpr int kWidestShadow = 26;
    const double length = cv::norm(to - from);
    const SideProfiles profiles(picture, from, to);
    const cv::Vec3f step = profiles.step(reach);
    std::optional<SideEdge> edge = edgeAlong(profiles, step, reach, tolerance);
    if (edge && reach > kNoShadow) {
        const auto opposite =
            edgeAlong(profiles, -step, std::min(2 * reach, kWidestShadow), tolerance);
        if (opposite && isShadow(profiles, *edge, *opposite)) {
            edge = opposite;
        }
    }
    if (!edge) {
        return std::nullopt;
    }
    const auto lineOf = [&](const OffsetLine& offsets) {
        return Line::through(profiles.placeOf(0) + profiles.inwards() * offsets.at(0.5 / kProfiles),
                             profiles.placeOf(kProfiles - 1) +
                                 profiles.inwards() * offsets.at(1 - 0.5 / kProfiles));
    };
    return FittedSide{lineOf(lineNearEnd(profiles, edge->step, edge->line, length, true)),
                      lineOf(lineNearEnd(profiles, edge->step, edge->line, length, false)),
                      edge->support};
}

bool isOnBorder(cv::Point2d from, cv::Point2d to, cv::Size picture) {
    constexpr double kNear = 1;
    const auto near = [](double one, double other, double border) {
        return std::abs(one - border) < kNear && std::abs(other - border) < kNear;
    };
    return near(from.x, to.x, -0.5) || near(from.y, to.y, -0.5) ||
           near(from.x, to.x, picture.width - 0.5) || near(from.y, to.y, picture.height - 0.5);
}

} // namespace

std::optional<FittedSheet> fitSides(const cv::Mat& picture, const Corners& corners, int reach,
                                    double tolerance) {
    // Lines that are nearly parallel meet anywhere, and a caller's corners may be anything.
    constexpr double kMargin = 0.5;
    if (!isPlausible(corners, picture.size(), 0, kMargin)) {
        return std::nullopt;
    }
    std::array<std::optional<FittedSide>, 4> sides;
    cv::parallel_for_({0, 4}, [&](const cv::Range& range) {
        for (auto i = static_cast<std::size_t>(range.start);
             i < static_cast<std::size_t>(range.end); ++i) {
            const cv::Point2d from = corners[i];
            const cv::Point2d to = corners[(i + 1) % 4];
            const Line line = Line::through(from, to);
            sides[i] = isOnBorder(from, to, picture.size())
                           ? FittedSide{line, line, 1, true}
                           : fitSide(picture, from, to, reach, tolerance);
        }
    });
    const auto borders = std::count_if(sides.begin(), sides.end(),
                                       [](const auto& side) { return side && side->isBorder; });
    if (borders > 2) {
        return std::nullopt;
    }
    FittedSheet sheet{corners, 1};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto& before = sides[(i + 3) % 4];
        if (!sides[i] || !before) {
            return std::nullopt;
        }
        sheet.corners[i] = before->end.meet(sides[i]->start);
        sheet.support = std::min(sheet.support, sides[i]->support);
    }
    return isPlausible(sheet.corners, picture.size(), 0, kMargin) ? std::optional(sheet)
                                                                  : std::nullopt;
}

} // namespace doccam::page
