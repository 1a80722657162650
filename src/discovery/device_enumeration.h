// Which supported cameras are attached.
#pragma once

#include "state/parts.h"

namespace doccam {

// Looks for supported cameras and prints the node of each. How many there are; -1 when libudev
// cannot be used. Host thread.
int enumerateCameras(record::Discovery& discovery);

// True when index names a found camera; enumerates first if none is known yet.
bool cameraExists(record::Discovery& discovery, int index);

} // namespace doccam
