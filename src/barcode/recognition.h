// Reading codes for a host: from the live picture, and from a file.
#pragma once

#include "barcode/code_scan.h"
#include "state/parts.h"

namespace doccam {

// Asks the streaming thread to read a code from its next frame, waits about ten seconds for the
// answer at most, and returns the text read last. Valid until the next one but one. Host thread.
const char* requestCode(record::Session& session, int mode);

// Reads a code from an image file in a single scan and prints what comes of it. Null for an
// unreadable file and for one without any code; empty when there are codes of the other kind only.
// Valid until fifteen further texts have been returned. Any thread.
const char* readCodeFromFile(const char* path, CodeKind wanted);

} // namespace doccam
