// PDF files read back by other programs.
#pragma once

#include "decoded.h"

#include <string>
#include <vector>

namespace doccam::test {

// Standard output of a shell command; the test fails when the command does.
std::string outputOf(const std::string& command);

// "WIDTHxHEIGHT" of each page, in points. The test fails when the file is damaged.
std::vector<std::string> pageSizes(const std::string& path);

// One line per picture of the file: colour, channels, bits and encoding, as in "rgb 3 8 jpeg".
std::vector<std::string> pictureKinds(const std::string& path);

// The index-th picture of the file, counting alpha masks.
Decoded extractPicture(const std::string& path, int index);

// The first page as a viewer draws it, one pixel per point.
Decoded drawPage(const std::string& path);

} // namespace doccam::test
