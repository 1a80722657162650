// Which processes have a device node open.
#pragma once

#include "doctor/findings.h"

#include <string>
#include <vector>

namespace doccam::host {

// Looks through a folder like /proc, but for the calling process. Processes of other users stay
// unseen unless the caller is root.
std::vector<Holder> holdersOf(const std::string& node, const std::string& processes = "/proc");

} // namespace doccam::host
