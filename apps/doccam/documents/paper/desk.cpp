#include "documents/paper/desk.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace doccam::host {
namespace {

using DeskCorners = std::array<cv::Point2d, 4>; // in millimetres

// From pixels to millimetres; the last coordinate is positive where the desk can be seen.
cv::Matx33d mapOf(const Desk& desk) {
    const auto [width, height] = desk.paper;
    const std::array<cv::Point2d, 4> paper{{{0, 0}, {width, 0}, {width, height}, {0, height}}};
    std::array<cv::Point2f, 4> from;
    std::array<cv::Point2f, 4> to;
    std::copy(desk.corners.begin(), desk.corners.end(), from.begin());
    std::copy(paper.begin(), paper.end(), to.begin());
    const cv::Matx33d map = cv::getPerspectiveTransform(from.data(), to.data());
    const cv::Point2d seen = desk.corners[0];
    return (map * cv::Vec3d(seen.x, seen.y, 1))[2] < 0 ? -map : map;
}

std::optional<cv::Point2d> mapped(const cv::Matx33d& map, cv::Point2d pixel) {
    const cv::Vec3d place = map * cv::Vec3d(pixel.x, pixel.y, 1);
    constexpr double kHorizon = 1e-6;
    return place[2] > kHorizon ? std::optional(cv::Point2d(place[0], place[1]) / place[2])
                               : std::nullopt;
}

std::optional<DeskCorners> mapped(const Desk& desk, const FrameCorners& corners) {
    const cv::Matx33d map = mapOf(desk);
    DeskCorners places;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto place = mapped(map, corners[i]);
        if (!place || !std::isfinite(place->x) || !std::isfinite(place->y)) {
            return std::nullopt;
        }
        places[i] = *place;
    }
    return places;
}

double side(const DeskCorners& corners, std::size_t from) {
    return cv::norm(corners[(from + 1) % 4] - corners[from]);
}

Millimetres meanSides(const DeskCorners& corners) {
    return {(side(corners, 0) + side(corners, 2)) / 2, (side(corners, 1) + side(corners, 3)) / 2};
}

Desk scaled(const Desk& desk, cv::Size frame) {
    Desk other = desk;
    other.frame = frame;
    const double across = static_cast<double>(frame.width) / desk.frame.width;
    const double down = static_cast<double>(frame.height) / desk.frame.height;
    for (cv::Point2d& corner : other.corners) {
        corner = {(corner.x + 0.5) * across - 0.5, (corner.y + 0.5) * down - 0.5};
    }
    return other;
}

} // namespace

std::optional<Millimetres> sizeOnDesk(const Desk& desk, const FrameCorners& sheet) {
    const auto corners = mapped(desk, sheet);
    return corners ? std::optional(meanSides(*corners)) : std::nullopt;
}

Millimetres sizeAt(const FrameCorners& sheet, Density density) {
    DeskCorners corners;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        corners[i] = {sheet[i].x * kInch / density.across, sheet[i].y * kInch / density.down};
    }
    return meanSides(corners);
}

std::optional<Millimetres> sizeOfView(const Desk& desk) {
    const double right = desk.frame.width - 0.5;
    const double bottom = desk.frame.height - 0.5;
    const auto corners =
        mapped(desk, {{{-0.5, -0.5}, {right, -0.5}, {right, bottom}, {-0.5, bottom}}});
    if (!corners) {
        return std::nullopt;
    }
    constexpr double kUpright = 0.02; // of a side by which that opposite may differ
    const Millimetres size = meanSides(*corners);
    const bool upright = std::abs(side(*corners, 0) - side(*corners, 2)) <= kUpright * size.width &&
                         std::abs(side(*corners, 1) - side(*corners, 3)) <= kUpright * size.height;
    return upright ? std::optional(size) : std::nullopt;
}

bool sameProportions(cv::Size a, cv::Size b) {
    const auto cross = [](int x, int y) { return static_cast<std::int64_t>(x) * y; };
    return std::llabs(cross(a.width, b.height) - cross(b.width, a.height)) <=
           std::max({a.width, a.height, b.width, b.height});
}

std::optional<Desk> deskFor(const std::vector<Desk>& desks, cv::Size frame) {
    const auto larger = [](const Desk& a, const Desk& b) {
        return a.frame.area() < b.frame.area();
    };
    std::vector<Desk> alike;
    for (const Desk& desk : desks) {
        if (desk.frame == frame) {
            return desk;
        }
        if (sameProportions(desk.frame, frame)) {
            alike.push_back(desk);
        }
    }
    return alike.empty() ? std::nullopt
                         : std::optional(scaled(
                               *std::max_element(alike.begin(), alike.end(), larger), frame));
}

} // namespace doccam::host
