// The access token, kept in the user's state folder over restarts.
#pragma once

#include <filesystem>
#include <string>

namespace doccam::serve {

// XDG_STATE_HOME/doccam, or ~/.local/state/doccam; empty when neither is known.
std::filesystem::path stateFolder();

// The token that the folder holds, or a new one, which it holds from now on. A file that others
// could have read or written, or that holds no token, is replaced. When nothing can be kept the
// token is for this time only. Throws std::system_error when there are no random numbers.
std::string keptToken(const std::filesystem::path& folder);

} // namespace doccam::serve
