// Files that the user names as input.
#pragma once

#include <string>

namespace doccam::host {

// Throws Failure, which says whether it is missing, a folder or unreadable, unless path names a
// regular file that can be opened for reading. Does not wait for a writer of a pipe.
void requireInputFile(const std::string& path);

} // namespace doccam::host
