// Automatic sheet changes: which sheet lies where in which frame.
#pragma once

#include "scene/scene_settings.h"

#include <cstdint>
#include <string>

namespace doccam::virtualcam {

// The scene of the number-th frame, from 0. Each sheet lies still for sheetFrames and leaves to the
// right; the desk is empty; then the next sheet, numbered one higher and lying slightly
// differently, enters from the left. Returns scene itself if its sheet stays for ever.
SceneSettings sceneAt(const SceneSettings& scene, std::uint32_t number);

// The text with its first run of digits incremented by steps, keeping its width. Texts without a
// number, or with one of more than nine digits, are returned unchanged.
std::string countedUp(const std::string& text, int steps);

} // namespace doccam::virtualcam
