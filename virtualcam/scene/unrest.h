// Lamps and hands that change the picture while a sheet lies still.
#pragma once

#include "scene/scene_settings.h"

#include <opencv2/core/mat.hpp>

namespace doccam::virtualcam {

// Whether each frame differs from the one before, apart from the sensor's noise.
bool changesEachFrame(const SceneSettings& settings);

// Adds the hand and the lamps' changes of that frame to the 8-bit, blue-first picture of the scene.
void stir(cv::Mat& picture, const SceneSettings& settings);

} // namespace doccam::virtualcam
