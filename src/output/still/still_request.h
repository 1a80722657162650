// The host's request for a still.
#pragma once

#include "state/parts.h"

namespace doccam {

// Deletes a file at path, requests a still there from the streaming thread, and waits for it at
// most about four seconds. Returns 0, even if no still was taken; -1, without a request, while no
// camera streams or if path is null or too long. One host thread at a time.
int requestStill(record::Session& session, const char* path);

} // namespace doccam
