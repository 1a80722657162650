// Opening a camera's device node.
#pragma once

namespace doccam {

// Opens the node at path for reading and writing, blocking, and close-on-exec, as a program started
// by the host would otherwise hold the camera. Returns the descriptor, or -1 with errno set.
int openDeviceNode(const char* path);

} // namespace doccam
