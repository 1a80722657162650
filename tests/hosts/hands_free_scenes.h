// Sheets laid under a drawn camera, and which of them the hands-free scan takes.
#pragma once

#include "scene/scene_settings.h"

#include <opencv2/core/types.hpp>

#include <string>
#include <vector>

namespace doccam::test {

struct HandsFreeScene {
    std::string name;
    virtualcam::SceneSettings settings;
};

// Lamps with bands and flicker, noise, hands, nudged sheets, a feeder, forms, all with sheets that
// change by themselves.
std::vector<HandsFreeScene> handsFreeScenes();

struct Takings {
    std::vector<int> sheets;          // the number of the sheet on each page, in order
    std::vector<int> frames;          // from the sheet's rest to its page
    std::vector<double> milliseconds; // spent on the frame that became the page
};

// Shows that many sheets of a scene in frames of the given size.
Takings takeSheets(const virtualcam::SceneSettings& scene, cv::Size frame, int sheets);

} // namespace doccam::test
