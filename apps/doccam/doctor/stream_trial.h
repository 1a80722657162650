// Trial streaming directly from the driver.
#pragma once

#include "doctor/findings.h"
#include "host/interrupt.h"

#include <string>

namespace doccam::host {

// Streams from the node at its largest size, in MJPEG if available, and checks the frames. Returns
// errno if the node cannot be opened, otherwise 0 with the result in trial. Throws Interruption
// when the process is asked to end.
int tryStream(const std::string& node, Trial& trial, const Interrupt& interrupt);

} // namespace doccam::host
