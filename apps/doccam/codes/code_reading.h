// Reading codes from picture files and from the live picture.
#pragma once

#include "camera/camera_session.h"
#include "host/context.h"

#include <string>
#include <vector>

namespace doccam::host {

enum class CodeKind { kBar = 0, kQr = 1 }; // the library's modes

struct Code {
    CodeKind kind = CodeKind::kQr;
    std::string text; // the symbol's raw bytes
};

struct FileCodes {
    std::vector<Code> codes;
    bool complete = true; // false if the time limit of a file cut the search short
};

// "bar" and "qr".
std::string nameOf(CodeKind kind);

// At most one code of each kind, in the order of kinds. Large pictures are reduced. Throws Failure
// for a file that is not a readable picture, Interruption when the process is asked to end.
FileCodes codesInFile(const std::string& path, const std::vector<CodeKind>& kinds,
                      const Context& context);

// The code in the next frame; empty if it has none. Throws Failure if the stream has ended,
// Interruption when the process is asked to end.
std::string liveCode(CameraSession& session, CodeKind kind);

} // namespace doccam::host
