// Negotiating the pixel format with the driver.
#pragma once

#include "state/parts.h"

namespace doccam {

// Prints the driver, formats and frame rate of the camera open at descriptor.
void printCamera(int descriptor);

// Asks the open camera for the grab size and the set format, and records what it settled on. 0, or
// openCamera's result code for the request that failed.
int negotiateFormat(record::Session& session, const record::Settings& settings);

} // namespace doccam
