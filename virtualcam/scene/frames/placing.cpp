#include "scene/frames/placing.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::virtualcam {

namespace {

constexpr int kMargin = 14; // pixels between a whole sheet and the picture's border
constexpr int kTries = 40;
constexpr double kGap = 12; // millimetres between sheets

bool isWithin(const Quad& quad, double margin) {
    return std::all_of(quad.begin(), quad.end(), [&](const cv::Point2d& point) {
        return point.x >= margin && point.y >= margin && point.x < kFullSize.width - margin &&
               point.y < kFullSize.height - margin;
    });
}

int outside(const Quad& quad) {
    return static_cast<int>(std::count_if(quad.begin(), quad.end(), [](const cv::Point2d& point) {
        return point.x < -40 || point.y < -40 || point.x > kFullSize.width + 40 ||
               point.y > kFullSize.height + 40;
    }));
}

// A quarter turn, and the more crooked the more room there is.
double randomRotation(double fill, cv::RNG& random) {
    const double most = fill > 0.6 ? 9 : 45;
    return 90 * random.uniform(0, 4) + random.uniform(-most, most);
}

void moveTo(LaidSheet& sheet, CameraView& view, cv::Point2d pixel, double fill) {
    for (int i = 0; i < 10; ++i) {
        sheet.centre = project(deskToPicture(view, kFullSize).inv(), pixel);
        const double seen = area(cornersInPicture(sheet, view, kFullSize)) / kFullSize.area();
        view.distance *= std::sqrt(seen / fill);
    }
    sheet.centre = project(deskToPicture(view, kFullSize).inv(), pixel);
}

cv::RotatedRect outline(const LaidSheet& sheet, double gap) {
    return {cv::Point2f(sheet.centre),
            cv::Size2f(static_cast<float>(sheet.millimetres.width + gap),
                       static_cast<float>(sheet.millimetres.height + gap)),
            static_cast<float>(sheet.rotation)};
}

bool isFree(const LaidSheet& sheet, const std::vector<LaidSheet>& laid) {
    std::vector<cv::Point2f> common;
    return std::all_of(laid.begin(), laid.end(), [&](const LaidSheet& other) {
        return cv::rotatedRectangleIntersection(outline(sheet, kGap), outline(other, kGap),
                                                common) == cv::INTERSECT_NONE;
    });
}

bool findPlace(LaidSheet& sheet, const std::vector<LaidSheet>& laid, const CameraView& view,
               cv::RNG& random) {
    for (int i = 0; i < 10 * kTries; ++i) {
        const cv::Point2d pixel(random.uniform(0.1, 0.9) * kFullSize.width,
                                random.uniform(0.1, 0.9) * kFullSize.height);
        sheet.centre = project(deskToPicture(view, kFullSize).inv(), pixel);
        sheet.rotation = random.uniform(0.0, 360.0);
        if (isWithin(cornersInPicture(sheet, view, kFullSize), kMargin) && isFree(sheet, laid)) {
            return true;
        }
    }
    return false;
}

} // namespace

CameraView randomView(double leastTilt, double largestTilt, cv::RNG& random) {
    CameraView view;
    view.focal = random.uniform(0.8, 1.5);
    view.tilt = random.uniform(leastTilt, largestTilt);
    view.tiltDirection = random.uniform(0.0, 360.0);
    return view;
}

void placeWhole(LaidSheet& sheet, CameraView& view, double fill, cv::RNG& random) {
    for (;; fill *= 0.95) {
        for (int i = 0; i < kTries; ++i) {
            sheet.rotation = randomRotation(fill, random);
            const double room = 0.5 * (1 - std::sqrt(fill));
            const cv::Point2d pixel((0.5 + random.uniform(-room, room)) * kFullSize.width,
                                    (0.5 + random.uniform(-room, room)) * kFullSize.height);
            moveTo(sheet, view, pixel, fill);
            if (isWithin(cornersInPicture(sheet, view, kFullSize), kMargin)) {
                return;
            }
        }
    }
}

void placeCut(LaidSheet& sheet, CameraView& view, double fill, cv::RNG& random) {
    for (;;) {
        sheet.rotation = 90 * random.uniform(0, 4) + random.uniform(-12.0, 12.0);
        const bool sideways = random.uniform(0, 2) == 1;
        const double aside = (random.uniform(0, 2) == 1 ? 1 : -1) * random.uniform(0.2, 0.42);
        const double middle = random.uniform(-0.06, 0.06);
        const cv::Point2d pixel((0.5 + (sideways ? aside : middle)) * kFullSize.width,
                                (0.5 + (sideways ? middle : aside)) * kFullSize.height);
        moveTo(sheet, view, pixel, fill);
        const Quad corners = cornersInPicture(sheet, view, kFullSize);
        const auto inside = std::count_if(corners.begin(), corners.end(), [](const auto& point) {
            return cv::Rect2d(kMargin, kMargin, kFullSize.width - 2.0 * kMargin,
                              kFullSize.height - 2.0 * kMargin)
                .contains(point);
        });
        if (outside(corners) == 2 && inside == 2) {
            return;
        }
    }
}

void placeBesideEachOther(std::vector<LaidSheet>& sheets, CameraView& view, double width,
                          cv::RNG& random) {
    view.distance = width * view.focal;
    std::vector<LaidSheet> laid;
    for (LaidSheet& sheet : sheets) {
        if (findPlace(sheet, laid, view, random)) {
            laid.push_back(sheet);
        }
    }
    sheets = laid;
}

} // namespace doccam::virtualcam
