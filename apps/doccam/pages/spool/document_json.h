// What the user says of a document, as its manifest has it.
#pragma once

#include "documents/document_options.h"

#include <nlohmann/json.hpp>

#include <string>

namespace doccam::host {

// Without the size of the pages.
nlohmann::ordered_json asJson(const DocumentOptions& options);

// Throws std::exception for anything that asJson() would not have written.
DocumentOptions documentOptionsIn(const nlohmann::ordered_json& value);

// File names and arguments are any bytes, JSON takes none but UTF-8.
std::string escaped(const std::string& text);
std::string unescaped(const std::string& text);

} // namespace doccam::host
