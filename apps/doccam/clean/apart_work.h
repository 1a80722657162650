// Working on one picture file in a process of its own.
#pragma once

#include "host/apart.h"
#include "host/context.h"

#include <functional>
#include <string>
#include <vector>

namespace doccam::host {

// Throws the Failure of a picture that cannot be cleaned.
[[noreturn]] void failToClean(const std::string& file);

// What work reports, done apart within the limits of picture files. Throws Failure.
std::vector<std::string> workApart(const Context& context, const std::string& file,
                                   const std::function<void(const Report&)>& work);

} // namespace doccam::host
