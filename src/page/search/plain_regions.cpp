#include "page/search/plain_regions.h"

#include "page/line.h"
#include "page/quadrilateral.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace doccam::page {
namespace {

// The hull's four sides.
std::optional<Corners> cornersOf(const std::vector<cv::Point>& outline) {
    constexpr double kStep = 0.01; // of the hull's length
    constexpr int kSteps = 9;
    std::vector<cv::Point> hull;
    cv::convexHull(outline, hull);
    const double length = cv::arcLength(hull, true);
    std::vector<cv::Point> corners;
    for (int step = 1; step <= kSteps; ++step) {
        cv::approxPolyDP(hull, corners, step * kStep * length, true);
        if (corners.size() <= 4) {
            break;
        }
    }
    if (corners.size() != 4) {
        return std::nullopt;
    }
    Corners found;
    std::copy(corners.begin(), corners.end(), found.begin());
    return clockwise(found);
}

// With each side farther outside.
Corners grown(const Corners& corners, double by) {
    std::vector<Line> sides;
    for (std::size_t i = 0; i < 4; ++i) {
        const Line side = Line::through(corners[i], corners[(i + 1) % 4]);
        sides.emplace_back(side.normal(), side.distance() - by);
    }
    Corners result;
    for (std::size_t i = 0; i < 4; ++i) {
        result[i] = sides[(i + 3) % 4].meet(sides[i]);
    }
    return result;
}

struct PlainRegion {
    double area;
    Corners corners;
};

// Of those in plain, 255 where it is smooth.
void addRegions(const cv::Mat& plain, std::vector<PlainRegion>& regions) {
    constexpr double kLeastArea = 0.004; // of the picture
    constexpr double kOwnEdge = 4;       // within which a region is rough, by its own edge
    std::vector<std::vector<cv::Point>> outlines;
    cv::findContours(plain, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_SIMPLE);
    for (const std::vector<cv::Point>& outline : outlines) {
        const double area = cv::contourArea(outline);
        if (area < kLeastArea * plain.size().area()) {
            continue;
        }
        if (const auto corners = cornersOf(outline)) {
            regions.push_back({area, grown(*corners, kOwnEdge)});
        }
    }
}

// The largest, without those that are nearly the same as a larger one.
std::vector<Corners> largest(std::vector<PlainRegion> regions) {
    constexpr std::size_t kMaximum = 12;
    constexpr double kSame = 4;
    std::sort(regions.begin(), regions.end(), [](const PlainRegion& one, const PlainRegion& other) {
        return one.area > other.area;
    });
    std::vector<Corners> kept;
    for (const PlainRegion& region : regions) {
        if (kept.size() == kMaximum) {
            break;
        }
        if (std::none_of(kept.begin(), kept.end(), [&](const Corners& other) {
                return distanceBetween(region.corners, other) < kSame;
            })) {
            kept.push_back(region.corners);
        }
    }
    return kept;
}

} // namespace

std::vector<Corners> plainRegions(const Evidence& evidence) {
    // How rough a cloth is, and how wide the rough rim of a picture on a card, differs.
    constexpr std::array kThresholds{4, 6, 9, 13, 19};
    constexpr std::array kGaps{7, 17};
    constexpr int kSpike = 11; // a square of a cloth, as smooth as paper, beside a sheet
    std::vector<PlainRegion> found;
    for (const int threshold : kThresholds) {
        for (const int gap : kGaps) {
            cv::Mat plain = evidence.roughness < threshold;
            cv::morphologyEx(plain, plain, cv::MORPH_CLOSE, cv::Mat::ones(gap, gap, CV_8U));
            cv::morphologyEx(plain, plain, cv::MORPH_OPEN, cv::Mat::ones(kSpike, kSpike, CV_8U));
            addRegions(plain, found);
        }
    }
    return largest(std::move(found));
}

} // namespace doccam::page
