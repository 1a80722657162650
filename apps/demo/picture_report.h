// What the demo says of the files it leaves.
#pragma once

#include <string>

namespace demo {

// Prints one row: file, size in pixels (or pages), bytes. False when there is no such file.
bool reportFile(const std::string& path);

// The likeness of the picture to the photograph it was taken of, in dB; the photograph is first
// scaled as the camera scaled it. Negative when one of them cannot be read.
double likeness(const std::string& picture, const std::string& photograph);

} // namespace demo
