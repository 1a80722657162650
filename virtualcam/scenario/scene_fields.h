// The scene of a camera in a scenario file.
#pragma once

#include "scenario/json_fields.h"
#include "scene/scene_settings.h"

namespace doccam::virtualcam {

// Throws std::exception for unknown fields and impossible values.
SceneSettings readScene(const Json& object);

} // namespace doccam::virtualcam
