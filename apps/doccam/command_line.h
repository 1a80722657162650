// The command line: global options and all commands.
#pragma once

#include "host/context.h"

#include <CLI/App.hpp>

#include <memory>

namespace doccam::host {

// Parses into context, which must outlive the result.
std::unique_ptr<CLI::App> makeCommandLine(Context& context);

} // namespace doccam::host
