// Reading the codes of picture files.
#pragma once

#include "codes/picture_codes.h"
#include "host/context.h"

#include <string>

namespace doccam::host {

// The codes of a picture file, then those that only its sheets showed; incomplete if the time of a
// file cut the search short. Throws Failure for a file that is not a readable picture, Interruption
// when the process is asked to end.
CodesFound codesInFile(const std::string& path, unsigned symbologies, const Context& context);

} // namespace doccam::host
