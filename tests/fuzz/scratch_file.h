// Files for operations that take a path.
#pragma once

#include <span>
#include <string>

namespace doccam::test {

// The path of name in a folder that exists until the process ends.
std::string scratchPath(const std::string& name);

// Writes bytes to the file and returns its path.
std::string writeScratchFile(const std::string& name, std::span<const unsigned char> bytes);

} // namespace doccam::test
