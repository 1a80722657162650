// Agreeing with the driver on what it streams.
#pragma once

namespace doccam {

// Prints what the open camera says of itself: driver, formats, frame rate.
void printCamera();

// Asks the open camera for the grab size in the chosen format and notes what it settled on. 0, or
// openCamera's result code for the request that failed.
int negotiateFormat();

} // namespace doccam
