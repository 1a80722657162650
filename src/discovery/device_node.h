// Opening a camera's device node.
#pragma once

namespace doccam {

// Opens the node at path for reading and writing, in blocking mode, and keeps it from programs that
// the host starts: they would hold the camera. Returns the descriptor, or -1 with errno set.
int openDeviceNode(const char* path);

} // namespace doccam
