// What a category asks of its frames.
#pragma once

#include "scene/frames/desk_scene.h"
#include "scene/pages/printed_page.h"

#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace doccam::virtualcam {

// Everything about a frame before it is drawn. The first sheets of scene and pages belong together.
struct FramePlan {
    DeskScene scene;
    std::vector<PrintedPage> pages;
    std::vector<std::string> kinds; // of the sheets
    double fill = 0.5;              // of the picture that a single sheet fills
    double leastTilt = 0;           // degrees
    double largestTilt = 12;
    bool cut = false;
    bool handShadow = false;
    bool finger = false; // on the sheet's edge
    int jpegQuality = 92;
};

// The plan of a category's frame; its sheets lie nowhere yet. Throws std::invalid_argument for an
// unknown one.
FramePlan planFrame(const std::string& category, cv::RNG& random);

// Adds the planned hands, for which the sheets must lie in their places.
void addHands(FramePlan& plan, cv::RNG& random);

} // namespace doccam::virtualcam
