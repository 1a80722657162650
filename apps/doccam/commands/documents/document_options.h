// The options of commands that make PDFs.
#pragma once

#include "documents/document_options.h"

#include <CLI/App.hpp>

#include <set>
#include <string>

namespace doccam::host {

// --ocr, --upright, --compact, --title, --author, --language and --date.
void addDocumentOptions(CLI::App& command, DocumentOptions& options);

// Those of them that the command line has.
std::set<std::string> givenDocumentOptions(const CLI::App& command);

} // namespace doccam::host
