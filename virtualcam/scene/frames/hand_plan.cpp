// Hands over the sheets of a frame.
#include "scene/frames/frame_plan.h"
#include "scene/frames/placing.h"

#include <cmath>

namespace doccam::virtualcam {

namespace {

// From outside of the sheet towards it.
double directionTo(cv::Point2d tip, const Quad& corners) {
    cv::Point2d middle(0, 0);
    for (const cv::Point2d& corner : corners) {
        middle += corner / 4.0;
    }
    return std::atan2(middle.y - tip.y, middle.x - tip.x) * 180 / CV_PI;
}

void castHand(FramePlan& plan, const Quad& corners, cv::RNG& random) {
    const cv::Point2d tip =
        (corners[0] + corners[2]) / 2.0 + (corners[static_cast<std::size_t>(random.uniform(0, 4))] -
                                           (corners[0] + corners[2]) / 2.0) *
                                              random.uniform(0.1, 0.8);
    const double direction = random.uniform(0.0, 360.0);
    HandShadow shadow;
    shadow.hand = spreadHand(tip, direction, random.uniform(90.0, 150.0), random);
    shadow.blur = random.uniform(0, 2) == 0 ? random.uniform(2.0, 6.0) : random.uniform(30.0, 90.0);
    shadow.strength = random.uniform(0.3, 0.6);
    plan.scene.light.shadows.push_back(shadow);
}

void layFinger(FramePlan& plan, const Quad& corners, cv::RNG& random) {
    static const cv::Scalar kSkins[] = {
        {0.30, 0.42, 0.68}, {0.2, 0.3, 0.54}, {0.1, 0.16, 0.32}, {0.05, 0.08, 0.16}};
    const auto side = static_cast<std::size_t>(random.uniform(0, 4));
    const double part = random.uniform(0.25, 0.75);
    const cv::Point2d edge = corners[side] * (1 - part) + corners[(side + 1) % 4] * part;
    const double scale = std::sqrt(area(corners) / plan.pages.front().millimetres.area()) * 16;
    const double direction = directionTo(edge, corners) + random.uniform(-25.0, 25.0);
    const cv::Point2d way(std::cos(direction * CV_PI / 180), std::sin(direction * CV_PI / 180));
    plan.scene.skin = kSkins[random.uniform(0, 4)];
    plan.scene.hands.push_back(
        pointingHand(edge + way * scale * random.uniform(0.5, 1.0), direction, scale));
}

// Of an empty desk, the middle of the picture.
Quad placeForHands(const FramePlan& plan) {
    if (plan.scene.sheets.empty()) {
        const double right = 0.8 * kFullSize.width;
        const double bottom = 0.8 * kFullSize.height;
        const cv::Point2d low(0.2 * kFullSize.width, 0.2 * kFullSize.height);
        return {low, cv::Point2d(right, low.y), {right, bottom}, {low.x, bottom}};
    }
    return cornersInPicture(plan.scene.sheets.front(), plan.scene.view, kFullSize);
}

} // namespace

void addHands(FramePlan& plan, cv::RNG& random) {
    const Quad corners = placeForHands(plan);
    if (plan.handShadow) {
        castHand(plan, corners, random);
    }
    if (plan.finger) {
        layFinger(plan, corners, random);
    }
}

} // namespace doccam::virtualcam
