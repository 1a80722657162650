// What is true of a drawn frame, as JSON.
#pragma once

#include "scene/frames/drawn_frame.h"

#include <nlohmann/json.hpp>

#include <string>

namespace doccam::test {

// The file of the frame's sheet-th flat page.
std::string flatPageName(const virtualcam::DrawnFrame& frame, std::size_t sheet);

// Category, desk, seed, and of each sheet: kind, corners in pixels (clockwise from the top left of
// the upright page, the centre of the picture's top left pixel being 0, 0), proportions (width
// divided by height), whether a side is cut, the flat page's file, and words and regions in its
// pixels as [x, y, width, height].
nlohmann::json truthOf(const virtualcam::DrawnFrame& frame);

} // namespace doccam::test
