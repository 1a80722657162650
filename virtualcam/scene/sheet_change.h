// Sheets that are changed by themselves, as by a hand: which sheet lies where in which frame.
#pragma once

#include "scene/scene_settings.h"

#include <cstdint>
#include <string>

namespace doccam::virtualcam {

// The scene of the number-th frame, from 0. Each sheet lies still for sheetFrames, is drawn off to
// the right, the desk is empty, and the next sheet, numbered one up and lying a little otherwise,
// is pushed in from the left. The scene itself where its sheet stays for ever.
SceneSettings sceneAt(const SceneSettings& scene, std::uint32_t number);

// The text with its first run of digits counted up by steps, at least as many digits as before; a
// text without a number as it is, and so is one whose number has more than nine digits.
std::string countedUp(const std::string& text, int steps);

} // namespace doccam::virtualcam
