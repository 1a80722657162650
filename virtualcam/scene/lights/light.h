// The lamps over the desk, and what stands in their way.
#pragma once

#include "scene/lights/hand.h"

#include <opencv2/core.hpp>

#include <vector>

namespace doccam::virtualcam {

// A lamp's reflection on something glossy: fractions of the picture's height.
struct Glare {
    cv::Point2d centre;
    cv::Size2d size;
    double angle = 0;    // degrees
    double strength = 0; // added light, 1 for white
};

struct HandShadow {
    Hand hand;
    double blur = 3;       // pixels
    double strength = 0.5; // of the light that is taken
};

struct Light {
    double exposure = 0.9;        // of full scale, for white in full light
    double gradient = 1;          // brightest to darkest place
    double gradientDirection = 0; // degrees, towards the darkest place, clockwise from the right
    double vignetting = 0;        // of the light that the corners lose
    cv::Scalar tint{1, 1, 1};     // blue first
    std::vector<HandShadow> shadows;
    std::vector<Glare> glares;
};

// Lights scene, reflectances in linear CV_32FC3.
void shine(cv::Mat& scene, const Light& light);

} // namespace doccam::virtualcam
