// Finding attached supported cameras.
#pragma once

#include "state/parts.h"

namespace doccam {

// Enumerates supported cameras and prints the node of each. Returns their number, or -1 if libudev
// cannot be used. Host thread.
int enumerateCameras(record::Discovery& discovery);

// Whether index is that of a found camera; enumerates first if none is known yet.
bool cameraExists(record::Discovery& discovery, int index);

} // namespace doccam
