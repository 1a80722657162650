// Explaining openCamera's results to the user.
#pragma once

#include <string>

namespace doccam::host {

// Why the camera cannot be opened and what to do, with a full stop.
std::string openingAdvice(int code);

} // namespace doccam::host
