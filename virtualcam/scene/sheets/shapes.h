// Sheets that are no plain rectangles.
#pragma once

#include "scene/sheets/laid_sheet.h"

namespace doccam::virtualcam {

// Rounds all corners, as cards have them.
void roundCorners(LaidSheet& sheet, double millimetres);

// Folds the corner, counted clockwise from the top left, over the print: along each side that many
// millimetres are missing.
void foldCorner(LaidSheet& sheet, int corner, cv::Size2d millimetres);

} // namespace doccam::virtualcam
