// The command line as a whole: global options and all commands.
#pragma once

#include "host/context.h"

#include <CLI/App.hpp>

#include <memory>

namespace doccam::host {

// Reads into context, which outlives the result.
std::unique_ptr<CLI::App> makeCommandLine(Context& context);

} // namespace doccam::host
