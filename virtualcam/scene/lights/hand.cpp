#include "scene/lights/hand.h"

#include "scene/lights/shadow.h"
#include "scene/views/polygon.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::virtualcam {

namespace {

cv::Point2d unit(double degrees) {
    return {std::cos(degrees * CV_PI / 180), std::sin(degrees * CV_PI / 180)};
}

void fillEnd(cv::Mat& mask, cv::Point2d at, double radius) {
    constexpr int kShift = 4;
    constexpr int kPart = 1 << kShift;
    cv::circle(mask, {cvRound(at.x * kPart), cvRound(at.y * kPart)}, cvRound(radius * kPart),
               cv::Scalar(255), cv::FILLED, cv::LINE_AA, kShift);
}

void fillLimb(cv::Mat& mask, const Limb& limb) {
    const cv::Point2d along = limb.to - limb.from;
    const cv::Point2d across = cv::Point2d(-along.y, along.x) / cv::norm(along);
    fillEnd(mask, limb.from, limb.fromRadius);
    fillEnd(mask, limb.to, limb.toRadius);
    fillPolygon(mask,
                {limb.from - across * limb.fromRadius, limb.to - across * limb.toRadius,
                 limb.to + across * limb.toRadius, limb.from + across * limb.fromRadius},
                cv::Scalar(255), cv::LINE_AA);
}

// Round like a finger: bright in the middle, dark at the rim.
float roundness(float inside, double radius) {
    const double rim = 1 - std::min(inside / radius, 1.0);
    return static_cast<float>(0.5 + 0.5 * std::sqrt(1 - rim * rim));
}

} // namespace

Hand spreadHand(cv::Point2d tip, double direction, double scale, cv::RNG& random) {
    const cv::Point2d along = unit(direction);
    const cv::Point2d across(-along.y, along.x);
    const cv::Point2d palm = tip - along * scale * 7.5;
    Hand hand{{palm - along * scale * 40, palm - along * scale * 3, scale * 2.4, scale * 1.8},
              {palm - along * scale * 2.5, palm + along * scale, scale * 1.9, scale * 2.1}};
    const double lengths[] = {6.4, 7.0, 6.5, 5.2};
    for (int i = 0; i < 4; ++i) {
        const double offset = (i - 1.5) * 1.05;
        const cv::Point2d root = palm + along * scale + across * offset * scale;
        const cv::Point2d way = unit(direction + (i - 1.5) * random.uniform(4.0, 13.0));
        hand.push_back({root, root + way * scale * (lengths[i] - 0.5), scale * 0.56, scale * 0.42});
    }
    const cv::Point2d thumb = palm - along * scale * 1.5 - across * scale * 1.6;
    hand.push_back({thumb, thumb + unit(direction - 48) * scale * 4, scale * 0.75, scale * 0.5});
    return hand;
}

Hand pointingHand(cv::Point2d tip, double direction, double scale) {
    const cv::Point2d along = unit(direction);
    const cv::Point2d end = tip - along * scale * 0.45;
    const cv::Point2d middle = end - along * scale * 2;
    const cv::Point2d root = middle - unit(direction + 7) * scale * 3;
    const cv::Point2d palm = root - unit(direction + 12) * scale * 3;
    return {{palm - unit(direction + 12) * scale * 40, palm, scale * 2.4, scale * 2},
            {palm, root, scale * 1.9, scale * 0.75},
            {root, middle, scale * 0.62, scale * 0.56},
            {middle, end, scale * 0.56, scale * 0.45}};
}

cv::Mat handMask(const Hand& hand, cv::Size picture) {
    cv::Mat mask(picture, CV_8U, cv::Scalar(0));
    for (const Limb& limb : hand) {
        fillLimb(mask, limb);
    }
    return mask;
}

void paintHand(cv::Mat& scene, const Hand& hand, const cv::Scalar& skin) {
    const cv::Mat mask = handMask(hand, scene.size());
    const double scale = hand.back().toRadius * 2;
    cv::Mat moved;
    const cv::Matx23d away(1, 0, 0.12 * scale, 0, 1, 0.2 * scale);
    cv::warpAffine(mask, moved, away, mask.size());
    castShadow(scene, moved, 0.15 * scale, 0.5);
    cv::Mat inside;
    cv::distanceTransform(mask, inside, cv::DIST_L2, cv::DIST_MASK_PRECISE);
    for (int y = 0; y < scene.rows; ++y) {
        auto* const pixels = scene.ptr<cv::Vec3f>(y);
        for (int x = 0; x < scene.cols; ++x) {
            const float covered = static_cast<float>(mask.at<std::uint8_t>(y, x)) / 255;
            if (covered == 0) {
                continue;
            }
            const float light = roundness(inside.at<float>(y, x), 0.5 * scale);
            for (int c = 0; c < 3; ++c) {
                const float colour = static_cast<float>(skin[c]) * light;
                pixels[x][c] += (colour - pixels[x][c]) * covered;
            }
        }
    }
}

} // namespace doccam::virtualcam
