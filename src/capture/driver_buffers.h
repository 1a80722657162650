// The driver's capture buffers, mapped into the process.
#pragma once

#include "state/parts.h"

namespace doccam {

// Asks the open camera for buffers, maps and queues them, printing what it does. 0, or openCamera's
// result code for the request that failed. What was mapped before a failure stays mapped.
int mapDriverBuffers(record::Session& session);

// Silently unmaps what an earlier session left mapped, which would keep the device busy.
void unmapLostBuffers(record::Session& session);

// Unmaps all buffers, printing a line for each that is no longer mapped.
void unmapDriverBuffers(record::Session& session);

} // namespace doccam
