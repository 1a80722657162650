// The files that a target hands to operations which take a path.
#pragma once

#include <span>
#include <string>

namespace doccam::test {

// The path of name in a folder that lives as long as the process.
std::string scratchPath(const std::string& name);

// Writes bytes to the file and returns its path.
std::string writeScratchFile(const std::string& name, std::span<const unsigned char> bytes);

} // namespace doccam::test
