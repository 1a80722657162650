// Which supported cameras are attached.
#pragma once

namespace doccam {

// Looks for supported cameras and prints the node of each. How many there are; -1 when libudev
// cannot be used. Host thread.
int enumerateCameras();

// True when index names a found camera; enumerates first if none is known yet.
bool cameraExists(int index);

} // namespace doccam
