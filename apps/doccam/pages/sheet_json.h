// Sheets in the results of commands.
#pragma once

#include "host/own_output.h"
#include "pages/sheets.h"

#include <optional>

namespace doccam::host {

// {"sheet": [[x, y], ...], "confidence"}, both null without a sheet.
Json asJson(const std::optional<FoundSheet>& sheet);

} // namespace doccam::host
