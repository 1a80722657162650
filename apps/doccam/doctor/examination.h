// Looking at everything that the advice depends on.
#pragma once

#include "doctor/findings.h"
#include "host/interrupt.h"

namespace doccam::host {

// Opens each node, streams from the supported ones, and looks who uses them. Takes about a second
// for each camera, and longer for one that is silent. Throws Interruption when the process is asked
// to end.
Findings examine(const Interrupt& interrupt);

} // namespace doccam::host
