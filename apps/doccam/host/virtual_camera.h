// --virtual: the same command again, in a process that sees virtual cameras.
#pragma once

#include <filesystem>
#include <string>

namespace doccam::host {

struct VirtualCameraRequest {
    std::string photo; // what the cameras look at; empty: a drawn sheet
    int sheetFrames =
        0; // the drawn sheet is replaced by another one after so many frames; 0: never
};

// Becomes the launcher of the virtual camera with this very command line; returns only in the
// process that the launcher has started. Throws Failure when the launcher is not installed or the
// photo cannot be read.
void moveUnderVirtualCamera(const VirtualCameraRequest& request, char** argv);

// The folder that stands for /dev and /sys in a process that sees virtual cameras; empty in others.
std::filesystem::path virtualDeviceTree();

} // namespace doccam::host
