// The video nodes of the machine, as the device manager knows them.
#pragma once

#include "doctor/findings.h"

#include <optional>
#include <vector>

namespace doccam::host {

// All nodes that deliver pictures, with names, ids and groups; none when the device manager does
// not answer.
std::optional<std::vector<Node>> videoNodes();

} // namespace doccam::host
