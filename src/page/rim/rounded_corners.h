// Filling what a page shows of the desk outside of a sheet's rounded corners.
#pragma once

#include "page/rim/page_border.h"

namespace doccam::page {

// Cards, banknotes and pads are rounded: their corners become square, of the sheet's colour.
void fillRoundedCorners(PaperPage& page);

} // namespace doccam::page
