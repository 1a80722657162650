// Cameras pulled out and plugged in from outside the program that uses them.
//
// Whoever steers asks the launcher, which asks the program's own cameras and then changes the
// device tree, so that both agree.
#pragma once

#include "control.h"

#include <optional>
#include <string>

namespace doccam::virtualcam {

// Names the launcher's socket. The program's own cameras answer beside it.
inline constexpr const char* kControlVariable = "DOCCAM_VIRTUALCAM_CONTROL";

std::string devicesPath(const std::string& controlPath);

// "plug N" or "unplug N": camera N, counted from 0 in the order of the scenario.
struct PlugRequest {
    bool plug = false;
    int camera = 0;
};

// None where the line is no such request.
std::optional<PlugRequest> parsePlugRequest(const std::string& line);

// "ok CAPTURE METADATA": the nodes of a camera that was plugged in. None for any other answer.
std::optional<Nodes> parseNodes(const std::string& answer);

} // namespace doccam::virtualcam
