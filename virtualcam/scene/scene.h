// The drawn default picture: a tilted white sheet on a dark desk.
#pragma once

#include "scene/scene_settings.h"

#include <opencv2/core.hpp>

#include <array>

namespace doccam::virtualcam {

// The sheet alone, upright and flat: A4 at 200 dpi with lines of text, a red stamp, a QR code and a
// Code 128. Blue first.
cv::Mat flatSheet(const SceneSettings& settings);

// The sheet's corners in a picture of the given size, in pixels: clockwise from the top left of the
// upright sheet.
std::array<cv::Point2f, 4> sheetCorners(const SceneSettings& settings, cv::Size picture);

// The whole picture without sensor noise, blue first.
cv::Mat drawScene(const SceneSettings& settings, cv::Size picture);

// Adds a noise pattern to every sample; the same number gives the same pattern.
void addSensorNoise(cv::Mat& picture, double deviation, int pattern);

} // namespace doccam::virtualcam
