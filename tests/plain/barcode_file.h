// What zbar's own reader of picture files does with one, in this process.
#pragma once

#include <string>

namespace doccam::plain {

// Reads the picture, makes it grey and scans it once as a new scanner is set. The text of the first
// symbol; empty when there is none.
std::string codeInFile(const std::string& path);

} // namespace doccam::plain
