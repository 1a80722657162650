// Gathering the findings.
#pragma once

#include "doctor/findings.h"
#include "host/interrupt.h"

#include <string>
#include <vector>

namespace doccam::host {

// Opens each node, streams from the supported ones, and finds who uses them. Takes about a second
// per camera, longer for a silent one. Throws Interruption when the process is asked to end.
Findings examine(const Interrupt& interrupt);

// The processes that have a device node open, from a folder like /proc, except for the calling
// process. Only root sees the processes of other users.
std::vector<Holder> holdersOf(const std::string& node, const std::string& processes = "/proc");

} // namespace doccam::host
