// The sheet on a desk of another kind than the plain one, in perspective and in uneven light.
#pragma once

#include "scene/scene_settings.h"

#include <opencv2/core.hpp>

#include <array>

namespace doccam::virtualcam {

// Whether the scene is the default picture: a plain desk from straight above in even light.
bool isPlain(const SceneSettings& settings);

// As sheetCorners() and drawScene(), which see to plain scenes themselves.
std::array<cv::Point2f, 4> cornersOnDesk(const SceneSettings& settings, cv::Size picture);
cv::Mat drawOnDesk(const SceneSettings& settings, cv::Size picture);

} // namespace doccam::virtualcam
