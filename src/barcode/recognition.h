// Reading codes for a host: from the live picture, and from a file.
#pragma once

#include "barcode/code_scan.h"
#include "state/parts.h"

namespace doccam {

// Requests a code from the streaming thread's next frame, waits for it at most about ten seconds,
// and returns the text read last, which is valid until the next but one. Host thread.
const char* requestCode(record::Session& session, int mode);

// Reads a code from an image file in a single scan and prints the result. Null for an unreadable
// file or one without any code; empty if there are only codes of the other kind. Valid until
// fifteen further texts have been returned. Any thread.
const char* readCodeFromFile(const char* path, CodeKind wanted);

} // namespace doccam
