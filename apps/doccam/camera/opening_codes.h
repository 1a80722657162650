// What the results of openCamera mean to a user.
#pragma once

#include <string>

namespace doccam::host {

// Why the camera cannot be opened and what to do, ending with a full stop.
std::string openingAdvice(int code);

} // namespace doccam::host
