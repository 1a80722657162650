// What a host's preview shows.
#pragma once

#include <string>

namespace demo {

// Registers the preview callback; once per process, before the first camera is opened.
void watchPreview();

// Writes three preview pictures of the open camera into folder and prints a row for each: the whole
// frame at its best fit, an enlarged part of it, and the turned frame. Leaves the view as it was.
bool writePreviews(const std::string& folder);

} // namespace demo
