// A few frames straight from the driver.
#pragma once

#include "doctor/findings.h"

#include <string>

namespace doccam::host {

// Streams from the node at its largest size, as MJPEG if it has that, and judges the frames.
// Returns errno when the node cannot be opened, and 0 with what came of it in trial otherwise.
int tryStream(const std::string& node, Trial& trial);

} // namespace doccam::host
