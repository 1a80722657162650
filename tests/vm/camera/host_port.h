// The kernel's virtual USB host controller (vhci), into which a program plugs a device.
#pragma once

#include "base/unique_fd.h"

namespace doccam::vm {

// Connects a high-speed device to the first free port and returns the device's end of the socket,
// on which the host speaks USB/IP. Shutting the socket down unplugs the device. Throws
// std::runtime_error if no port is free or the kernel refuses.
UniqueFd connectDevice();

} // namespace doccam::vm
