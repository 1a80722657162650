// --virtual: the same command again, in a process that sees virtual cameras.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

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

// The folders that virtual cameras use in a process that sees them: what stands for /dev and /sys,
// and where they are steered from. None in other processes.
std::vector<std::filesystem::path> virtualCameraFolders();

} // namespace doccam::host
