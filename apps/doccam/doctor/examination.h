// Gathering the findings.
#pragma once

#include "doctor/findings.h"
#include "host/interrupt.h"

namespace doccam::host {

// Opens each node, streams from the supported ones, and finds who uses them. Takes about a second
// per camera, longer for a silent one. Throws Interruption when the process is asked to end.
Findings examine(const Interrupt& interrupt);

} // namespace doccam::host
