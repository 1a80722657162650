// Where this user's programs keep what outlives them.
#pragma once

#include <filesystem>

namespace doccam::host {

// $XDG_STATE_HOME/doccam, or ~/.local/state/doccam; empty if neither is known.
std::filesystem::path stateFolder();

// $XDG_CONFIG_HOME/doccam, or ~/.config/doccam; empty if neither is known.
std::filesystem::path configFolder();

} // namespace doccam::host
