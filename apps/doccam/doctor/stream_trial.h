// A few frames straight from the driver.
#pragma once

#include "doctor/findings.h"
#include "host/interrupt.h"

#include <string>

namespace doccam::host {

// Streams from the node at its largest size, as MJPEG if it has that, and judges the frames.
// Returns errno when the node cannot be opened, and 0 with what came of it in trial otherwise.
// Throws Interruption when the process is asked to end.
int tryStream(const std::string& node, Trial& trial, const Interrupt& interrupt);

} // namespace doccam::host
