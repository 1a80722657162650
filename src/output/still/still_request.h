// The host's request for a still.
#pragma once

#include "state/parts.h"

namespace doccam {

// Deletes a file at path, requests a still there from the streaming thread, and waits for it, about
// four seconds at most. 0, even if none was taken; -1, without a request, while no camera streams
// or for a path that is null or too long. One host thread at a time.
int requestStill(record::Session& session, const char* path);

} // namespace doccam
