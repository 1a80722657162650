// The true size of a page that was made of a frame of a calibrated camera.
#pragma once

#include "documents/paper/desk.h"
#include "pages/recipe.h"

#include <optional>

namespace doccam::host {

// Of the page that recipe makes of a frame with that desk; none without a desk, and for a whole
// frame of a tilted camera.
std::optional<Millimetres> calibratedSize(const Recipe& recipe, const std::optional<Desk>& desk);

} // namespace doccam::host
