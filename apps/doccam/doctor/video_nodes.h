// The machine's video nodes, from udev.
#pragma once

#include "doctor/findings.h"

#include <optional>
#include <vector>

namespace doccam::host {

// All nodes that deliver pictures, with names, IDs and groups; none if udev does not respond.
std::optional<std::vector<Node>> videoNodes();

} // namespace doccam::host
