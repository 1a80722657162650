// Finding attached supported cameras, and opening them.
#pragma once

#include "state/parts.h"

namespace doccam {

// Enumerates supported cameras and prints the node of each. Returns their number, or -1 if libudev
// cannot be used. Host thread.
int enumerateCameras(record::Discovery& discovery);

// Whether index is that of a found camera; enumerates first if none is known yet.
bool cameraExists(record::Discovery& discovery, int index);

// Opens the camera at index, which must exist, for reading and writing, blocking, and
// close-on-exec: a program started by the host would otherwise hold the camera. The descriptor, or
// -1 with errno set.
int openDeviceNode(const record::Discovery& discovery, int index);

} // namespace doccam
