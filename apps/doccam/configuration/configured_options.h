// Options that take their defaults from the configuration file.
#pragma once

#include "configuration/config_file.h"

#include <CLI/App.hpp>

namespace doccam::host {

// Gives each option that the command line does not name what the profile says, or else the file.
// Call it once the command line is parsed. The options' counts stay those of the command line.
// Throws Failure, with the file's line, also for what concerns other commands and profiles.
void applyConfiguration(CLI::App& app, const ConfigChoice& choice);

} // namespace doccam::host
