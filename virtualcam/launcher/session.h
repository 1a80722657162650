// One run of a program with virtual cameras.
#pragma once

#include "launcher/options.h"

namespace doccam::virtualcam {

// Makes the device tree, runs the program in it and cleans up. Returns the program's exit status,
// 128 plus the signal's number when a signal ended it, 127 when it could not be started. Throws
// std::runtime_error where the cameras cannot be made.
int runSession(const Options& options);

} // namespace doccam::virtualcam
