// Telling two views of sheets apart.
#pragma once

#include "scan/sheet_view.h"

namespace doccam::host {

// Whether both show the same sheet, perhaps nudged, lit differently, or with a hand on it. A single
// line of print makes two sheets different.
bool showSameSheet(const SheetView& one, const SheetView& other);

} // namespace doccam::host
