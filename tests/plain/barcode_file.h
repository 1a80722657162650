// Reading a code from a picture file with zbar's own scanner.
#pragma once

#include <string>

namespace doccam::plain {

// Reads the picture, converts it to grey and scans it once with a default scanner. Returns the text
// of the first symbol, or an empty one.
std::string codeInFile(const std::string& path);

} // namespace doccam::plain
