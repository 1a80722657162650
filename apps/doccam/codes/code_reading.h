// Codes of picture files and of the live picture.
#pragma once

#include "camera/camera_session.h"
#include "host/context.h"

#include <string>
#include <vector>

namespace doccam::host {

enum class CodeKind { kBar = 0, kQr = 1 }; // the library's modes

struct Code {
    CodeKind kind = CodeKind::kQr;
    std::string text; // the symbol's bytes as they are
};

struct FileCodes {
    std::vector<Code> codes;
    bool complete = true; // false: the time for a file was over before all had been tried
};

// "bar" and "qr".
std::string nameOf(CodeKind kind);

// At most one code of each kind, in the order of kinds. A picture beyond
// PictureLimits::kReducedPixels is reduced to that. Throws Failure for a file that is no readable
// picture, Interruption when the process is asked to end.
FileCodes codesInFile(const std::string& path, const std::vector<CodeKind>& kinds,
                      const Context& context);

// The code that the next frame shows; empty when it shows none. Throws Failure when the stream has
// ended, Interruption when the process is asked to end.
std::string liveCode(CameraSession& session, CodeKind kind);

} // namespace doccam::host
