// After Z. Zhang and L. He, Whiteboard scanning and image enhancement, Digital Signal Processing 17
// (2007), section 3.2: the directions of the sides in space, up to the focal length, which makes
// them perpendicular.
#include "page/aspect_ratio.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace doccam::page {
namespace {

// The sides' directions: x and y in pixels, z as a fraction of the focal length.
struct Directions {
    cv::Vec3d across;
    cv::Vec3d down;
};

Directions directionsOf(const Corners& corners, cv::Size picture) {
    const cv::Point2d middle((picture.width - 1) / 2.0, (picture.height - 1) / 2.0);
    const auto ray = [&](int corner) {
        const cv::Point2d at = corners[static_cast<std::size_t>(corner)] - middle;
        return cv::Vec3d(at.x, at.y, 1);
    };
    const cv::Vec3d topLeft = ray(0);
    const cv::Vec3d topRight = ray(1);
    const cv::Vec3d bottomRight = ray(2);
    const cv::Vec3d bottomLeft = ray(3);
    const cv::Vec3d diagonal = topLeft.cross(bottomRight);
    const double right = diagonal.dot(bottomLeft) / topRight.cross(bottomRight).dot(bottomLeft);
    const double low = diagonal.dot(topRight) / bottomLeft.cross(bottomRight).dot(topRight);
    return {right * topRight - topLeft, low * bottomLeft - topLeft};
}

double product(const cv::Vec3d& one, const cv::Vec3d& other, double focal) {
    return one[0] * other[0] + one[1] * other[1] + focal * focal * one[2] * other[2];
}

double bell(double distance, double width) {
    return std::exp(-distance * distance / (2 * width * width));
}

// How usual a ratio is, 1 for one of no format.
double commonness(double ratio) {
    constexpr double kIso = std::numbers::sqrt2;
    constexpr double kFormats[] = {kIso, 11 / 8.5, 14 / 8.5, 85.6 / 53.98};
    constexpr double kPreference = 6;
    constexpr double kTolerance = 0.006;
    double found = 1;
    for (const double format : kFormats) {
        found += kPreference * bell(std::log(std::max(ratio, 1 / ratio) / format), kTolerance);
    }
    return found;
}

struct View {
    double ratio;
    double likelihood;
};

View viewAt(const Directions& sides, double focal, double usualFocal) {
    constexpr double kFocalSpread = 0.25;     // of the logarithm
    constexpr double kAngleTolerance = 0.003; // in radians, by corners found a pixel wrong
    const double across = std::sqrt(product(sides.across, sides.across, focal));
    const double down = std::sqrt(product(sides.down, sides.down, focal));
    const double cosine = product(sides.across, sides.down, focal) / (across * down);
    const double ratio = across / down;
    return {ratio, bell(cosine, kAngleTolerance) *
                       bell(std::log(focal / usualFocal), kFocalSpread) * commonness(ratio)};
}

} // namespace

double leastCosine(const Corners& corners, cv::Size picture) {
    const Directions sides = directionsOf(corners, picture);
    double least = 1;
    for (const double lens : {0.7, 0.9, 1.1, 1.4, 1.8}) {
        const double focal = lens * std::max(picture.width, picture.height);
        const double lengths =
            product(sides.across, sides.across, focal) * product(sides.down, sides.down, focal);
        least = std::min(least,
                         std::abs(product(sides.across, sides.down, focal)) / std::sqrt(lengths));
    }
    return least;
}

double aspectRatio(const Corners& corners, cv::Size picture) {
    const Directions sides = directionsOf(corners, picture);
    const double usualFocal = 1.1 * std::max(picture.width, picture.height);
    constexpr int kSteps = 240; // over a factor of 3 each way
    View best{0, -1};
    for (int step = -kSteps; step <= kSteps; ++step) {
        const View view =
            viewAt(sides, usualFocal * std::pow(3.0, step / double{kSteps}), usualFocal);
        if (view.likelihood > best.likelihood) {
            best = view;
        }
    }
    return best.ratio;
}

} // namespace doccam::page
