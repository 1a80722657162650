// Which camera it is, whatever socket it is plugged into.
#pragma once

#include <string>

namespace doccam::host {

// "0c45:6366", with a serial number "0c45:6366:SERIAL", of camera index; "unknown" if udev does not
// know it.
std::string usbIdentityOf(int index);

} // namespace doccam::host
