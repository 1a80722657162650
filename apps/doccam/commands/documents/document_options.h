// The options of commands that make PDFs.
#pragma once

#include "documents/document_options.h"

#include <CLI/App.hpp>

namespace doccam::host {

// --ocr, --upright, --compact, --title, --author, --language and --date.
void addDocumentOptions(CLI::App& command, DocumentOptions& options);

} // namespace doccam::host
