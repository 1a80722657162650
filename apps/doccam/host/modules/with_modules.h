// The library's modules in commands: without one, a command fails with the reason.
#pragma once

#include "base/modules/module.h"
#include "host/failure.h"

namespace doccam::host {

// Runs action and returns its result. Throws Failure for a module that cannot be opened.
template <typename Action>
auto withModules(const Action& action) {
    try {
        return action();
    } catch (const ModuleError& error) {
        throw Failure(kFileFailed, error.what());
    }
}

} // namespace doccam::host
