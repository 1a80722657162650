#include "scene/unrest.h"

#include "scene/lights/hand.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace doccam::virtualcam {

namespace {

const cv::Size2d kSheetSize(210, 297);
const cv::Scalar kSkin(120, 150, 196);
constexpr double kFinger = 15;        // millimetres
constexpr double kPointing = 200;     // degrees: from the lower right
constexpr double kReach = 12;         // millimetres, from the sheet's edge to the finger's tip
constexpr double kAway = 260;         // millimetres, to where the hand is out of sight
constexpr double kGamma = 2.2;        // of the picture's grey levels
constexpr double kVisitEvery = 40;    // frames from visit to visit
constexpr double kVisitFrames = 20;   // that one takes,
constexpr double kVisitWayFrames = 6; // coming and going included

// How far the hand is from its place at the sheet's edge, 0 to 1.
double retreat(const SceneSettings& settings) {
    if (settings.unrest.hand == "stays") {
        return 0;
    }
    const double since = std::fmod(settings.frame, kVisitEvery);
    const double left = kVisitFrames - since;
    return 1 - std::clamp(std::min(since, left) / kVisitWayFrames, 0.0, 1.0);
}

void layHand(cv::Mat& picture, const SceneSettings& settings) {
    const double away = retreat(settings);
    if (away >= 1) {
        return;
    }
    const double millimetre = settings.sheetHeight * picture.rows / kSheetSize.height;
    cv::RNG random(settings.frame * 0x9e3779b97f4a7c15ULL + 1);
    const double tremble = settings.unrest.tremble;
    const double right =
        kSheetSize.width / 2 - kReach + away * kAway + random.gaussian(tremble / 2);
    const double down = kSheetSize.height / 5 + random.gaussian(tremble / 2);
    const cv::Point2d tip =
        cv::Point2d(0.5 * picture.cols, 0.5 * picture.rows) + cv::Point2d(right, down) * millimetre;
    cv::RNG shape(1);
    const cv::Mat mask =
        handMask(spreadHand(tip, kPointing, kFinger * millimetre, shape), picture.size());
    picture.setTo(kSkin, mask);
}

// What the lamps let through in each row, as a factor of the grey level.
std::vector<double> rowGains(const SceneSettings& settings, int rows) {
    const SceneUnrest& unrest = settings.unrest;
    const double flicker =
        unrest.flicker * std::cos(2 * CV_PI * settings.frame / unrest.flickerFrames);
    std::vector<double> gains(static_cast<std::size_t>(rows));
    for (int y = 0; y < rows; ++y) {
        const double bands = unrest.bandCount * y / rows - unrest.bandDrift * settings.frame;
        const double light = 1 - unrest.bands * (0.5 + 0.5 * std::sin(2 * CV_PI * bands)) -
                             0.5 * (unrest.flicker + flicker);
        gains[static_cast<std::size_t>(y)] = std::pow(std::max(light, 0.0), 1 / kGamma);
    }
    return gains;
}

void flickerRows(cv::Mat& picture, const SceneSettings& settings) {
    const std::vector<double> gains = rowGains(settings, picture.rows);
    for (int y = 0; y < picture.rows; ++y) {
        cv::Mat row = picture.row(y);
        row.convertTo(row, -1, gains[static_cast<std::size_t>(y)]);
    }
}

} // namespace

bool changesEachFrame(const SceneSettings& settings) {
    return settings.unrest.bands > 0 || settings.unrest.flicker > 0 ||
           settings.unrest.hand != "none";
}

void stir(cv::Mat& picture, const SceneSettings& settings) {
    if (settings.unrest.hand != "none") {
        layHand(picture, settings);
    }
    if (settings.unrest.bands > 0 || settings.unrest.flicker > 0) {
        flickerRows(picture, settings);
    }
}

} // namespace doccam::virtualcam
