// The options of commands that make pages of a true size.
#pragma once

#include "documents/paper/page_sizing.h"

#include <CLI/App.hpp>

#include <string>

namespace doccam::host {

// --dpi and --paper.
void addPaperOptions(CLI::App& command, PaperOptions& options);

// Returns what is wrong with the text of a paper; empty for a valid one.
std::string refuseOddPaper(const std::string& text);

} // namespace doccam::host
