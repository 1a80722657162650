// The access token, kept in the user's state folder across restarts.
#pragma once

#include <filesystem>
#include <string>

namespace doccam::serve {

// The token stored in the folder, or a new one, which is then stored. A file that others could have
// read or written, or that contains no token, is replaced. If nothing can be stored, the token is
// valid for this run only. Throws std::system_error if there are no random numbers.
std::string keptToken(const std::filesystem::path& folder);

} // namespace doccam::serve
