// Hands over the desk: as shadows, and with a finger on a sheet's edge.
#pragma once

#include <opencv2/core.hpp>

#include <vector>

namespace doccam::virtualcam {

// A limb with round ends, tapering; in pixels.
struct Limb {
    cv::Point2d from;
    cv::Point2d to;
    double fromRadius = 0;
    double toRadius = 0;
};

using Hand = std::vector<Limb>;

// A forearm with a hand and spread fingers, whose longest finger ends at tip and points along
// direction (degrees, clockwise from the right). scale is the width of a finger.
Hand spreadHand(cv::Point2d tip, double direction, double scale, cv::RNG& random);

// One finger alone, with the hand behind it.
Hand pointingHand(cv::Point2d tip, double direction, double scale);

// CV_8U: 255 where the hand is.
cv::Mat handMask(const Hand& hand, cv::Size picture);

// Paints the hand, lit and with its shadow, into scene (CV_32FC3, linear).
void paintHand(cv::Mat& scene, const Hand& hand, const cv::Scalar& skin);

} // namespace doccam::virtualcam
