// Looking at everything that the advice depends on.
#pragma once

#include "doctor/findings.h"

namespace doccam::host {

// Opens each node, streams from the supported ones, and looks who uses them. Takes about a second
// for each camera, and longer for one that is silent.
Findings examine();

} // namespace doccam::host
