// Plugging and unplugging cameras, and counting their frames, from outside the program that uses
// them.
//
// A controller sends its request to the launcher, which forwards it to the program's cameras and
// then changes the device tree, so that both agree.
#pragma once

#include "control.h"

#include <optional>
#include <string>

namespace doccam::virtualcam {

// Holds the path of the launcher's socket. That of the program's cameras is beside it.
inline constexpr const char* kControlVariable = "DOCCAM_VIRTUALCAM_CONTROL";

std::string devicesPath(const std::string& controlPath);

// "plug N" or "unplug N": camera N, counted from 0 in the order of the scenario.
struct PlugRequest {
    bool plug = false;
    int camera = 0;
};

// None if the line is malformed.
std::optional<PlugRequest> parsePlugRequest(const std::string& line);

// "frames N", which asks for the frames of camera N's stream; none for any other line.
std::optional<int> parseFramesRequest(const std::string& line);

// Parses "ok SENT MISSED WAIT"; none for any other answer.
std::optional<FrameCount> parseFrameCount(const std::string& answer);

// Parses "ok CAPTURE METADATA", the nodes of a plugged-in camera. None for any other answer.
std::optional<Nodes> parseNodes(const std::string& answer);

} // namespace doccam::virtualcam
