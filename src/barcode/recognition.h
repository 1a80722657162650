// Reading codes for a host: from the live picture, and from a file.
#pragma once

#include "barcode/code_scan.h"
#include "state/parts.h"

namespace doccam {

// Requests a code from the streaming thread's next frame, waits for it at most about ten seconds,
// and returns the text read last, which is valid until the next but one. Host thread.
const char* requestCode(record::Session& session, int mode);

// Scans an image file once for a code and prints the result. Null if it is unreadable or has none,
// empty if only of the other kind. Valid until fifteen more have been returned. Any thread.
const char* readCodeFromFile(const char* path, CodeKind wanted);

} // namespace doccam
