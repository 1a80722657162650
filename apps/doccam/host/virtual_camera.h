// --virtual: runs the same command in a process that sees virtual cameras.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace doccam::host {

struct VirtualCameraRequest {
    std::string photo;   // shown by the cameras; empty: a drawn sheet
    int sheetFrames = 0; // frames after which the drawn sheet is replaced; 0: never
};

// Executes the launcher with this command line; returns only in the process that it has started.
// Throws Failure if it is not installed or the photo cannot be read.
void moveUnderVirtualCamera(const VirtualCameraRequest& request, char** argv);

// The folders that virtual cameras use in a process that sees them: the replacements of /dev and
// /sys, and that of the control socket. None in other processes.
std::vector<std::filesystem::path> virtualCameraFolders();

} // namespace doccam::host
