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
    int jpegQuality = 92;
};

// The plan of a category's frame; its sheets lie nowhere yet. Throws std::invalid_argument for an
// unknown one.
FramePlan planFrame(const std::string& category, cv::RNG& random);

// What has to be known where the sheets lie: shadows and fingers on them.
void addHands(FramePlan& plan, const std::string& category, cv::RNG& random);

} // namespace doccam::virtualcam
