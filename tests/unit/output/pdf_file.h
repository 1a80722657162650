// PDF files read back by foreign programs.
#pragma once

#include "decoded.h"

#include <string>
#include <vector>

namespace doccam::test {

// Standard output of a shell command; the running test fails when the command does.
std::string outputOf(const std::string& command);

// "WIDTHxHEIGHT" of each page, in points. The running test fails when the file is not sound.
std::vector<std::string> pageSizes(const std::string& path);

// One line for each picture of the file: its colour, samples, bits and encoding, as "rgb 3 8 jpeg".
std::vector<std::string> pictureKinds(const std::string& path);

// The index-th picture of the file, or the opacity of one.
Decoded extractPicture(const std::string& path, int index);

// The first page as a viewer draws it, one point to one pixel.
Decoded drawPage(const std::string& path);

} // namespace doccam::test
