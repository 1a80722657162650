// Cameras as a JSON file describes them.
#pragma once

#include "description.h"

#include <string>
#include <vector>

namespace doccam::virtualcam {

// The cameras of a scenario file; README.md names its fields. Throws std::runtime_error that names
// the file and what is wrong with it.
std::vector<CameraDescription> readScenario(const std::string& path);

// The same from the text itself.
std::vector<CameraDescription> parseScenario(const std::string& text);

// Where the position-th camera of a machine is plugged in, as its driver reports it.
std::string defaultBusInfo(int position);

} // namespace doccam::virtualcam
