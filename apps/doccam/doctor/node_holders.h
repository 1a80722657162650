// Finding the processes that have a device node open.
#pragma once

#include "doctor/findings.h"

#include <string>
#include <vector>

namespace doccam::host {

// Searches a folder like /proc, except for the calling process. Only root sees the processes of
// other users.
std::vector<Holder> holdersOf(const std::string& node, const std::string& processes = "/proc");

} // namespace doccam::host
