// Sheets and the sizes of pages in the results of commands.
#pragma once

#include "documents/paper/page_size.h"
#include "host/own_output.h"
#include "pages/sheets.h"

#include <optional>

namespace doccam::host {

// {"sheet": [[x, y], ...], "confidence"}, both null without a sheet.
Json asJson(const std::optional<FoundSheet>& sheet);

// {"dpi", "dpi_from", "mm": [width, height]}
Json asJson(const SizedPage& page);

} // namespace doccam::host
