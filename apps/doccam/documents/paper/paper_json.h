// Desks and what the user says of pages, in files.
#pragma once

#include "documents/paper/desk.h"
#include "documents/paper/page_sizing.h"

#include <nlohmann/json.hpp>

namespace doccam::host {

// {"width", "height", "paper": [millimetres], "corners": [[x, y], ...]}
nlohmann::ordered_json asJson(const Desk& desk);

// {"dpi", "paper": [millimetres]}, null where nothing is said.
nlohmann::ordered_json asJson(const PaperOptions& options);

// These throw std::exception for anything that asJson() would not have made.
Desk deskIn(const nlohmann::ordered_json& value);
PaperOptions paperOptionsIn(const nlohmann::ordered_json& value);

} // namespace doccam::host
