// Cameras described by a JSON file.
#pragma once

#include "description.h"

#include <string>
#include <vector>

namespace doccam::virtualcam {

// Reads a scenario file; README.md documents its fields. Throws std::runtime_error naming the file
// and the error.
std::vector<CameraDescription> readScenario(const std::string& path);

// The same, from the text itself.
std::vector<CameraDescription> parseScenario(const std::string& text);

// The bus info that the driver reports for the position-th camera of a machine.
std::string defaultBusInfo(int position);

} // namespace doccam::virtualcam
