// The drawn default picture: a tilted white sheet on a dark desk.
#pragma once

#include "scene/scene_settings.h"

#include <opencv2/core.hpp>

#include <array>

namespace doccam::virtualcam {

// The sheet alone, upright and flat: A4 at 200 dots per inch, blue green red. Lines of text, a red
// stamp, a QR code and a Code 128.
cv::Mat flatSheet(const SceneSettings& settings);

// The sheet's corners in a picture of the given size: top left, top right, bottom right, bottom
// left of the upright sheet, in pixels.
std::array<cv::Point2f, 4> sheetCorners(const SceneSettings& settings, cv::Size picture);

// The whole picture without sensor noise, blue green red.
cv::Mat drawScene(const SceneSettings& settings, cv::Size picture);

// Adds one of the noise patterns to every sample; the same number gives the same pattern.
void addSensorNoise(cv::Mat& picture, double deviation, int pattern);

} // namespace doccam::virtualcam
