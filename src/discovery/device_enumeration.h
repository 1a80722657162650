// Finding attached supported cameras, and opening them.
#pragma once

#include "state/parts.h"

namespace doccam {

// Prints the nodes of supported cameras. Returns their number, -1 without libudev. Host thread.
int enumerateCameras(record::Discovery& discovery);

// Whether index is that of a found camera; enumerates first if none is known yet.
bool cameraExists(record::Discovery& discovery, int index);

// The node and the USB id of the camera at index; null if there is none. Enumerate first like
// cameraExists.
const char* cameraNode(record::Discovery& discovery, int index);
const char* cameraUsbId(record::Discovery& discovery, int index);

// Opens the camera at index, which must exist. The descriptor is blocking and close-on-exec, as a
// program started by the host would hold the camera; -1 with errno set on failure.
int openDeviceNode(const record::Discovery& discovery, int index);

} // namespace doccam
