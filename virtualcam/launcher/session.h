// One run of a program with virtual cameras.
#pragma once

#include "launcher/options.h"

namespace doccam::virtualcam {

// Creates the device tree, runs the program in it and cleans up. Returns the program's exit status,
// 128 plus the signal number if a signal ended it, 127 if it could not be started. Throws
// std::runtime_error if the cameras cannot be created.
int runSession(const Options& options);

} // namespace doccam::virtualcam
