// The host's own standard output, apart from the lines that the library prints there.
#pragma once

#include <cstdio>

namespace demo {

// Sends what the library prints to the file at path from now on. Once, before the first call of it.
void divertLibraryLines(const char* path);

// Where the host itself prints.
std::FILE* out();

} // namespace demo
