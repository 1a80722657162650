// The host's request for a still.
#pragma once

#include "state/parts.h"

namespace doccam {

// Deletes a file at path, asks the streaming thread for a still there, and waits about four seconds
// for it at most. 0, also when no still was taken; -1, and nothing is asked for, while no camera
// streams or when path is null or too long. One host thread at a time.
int requestStill(record::Session& session, const char* path);

} // namespace doccam
