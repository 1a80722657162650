// What a sheet's corners say: where it lies, how large it is, and how crooked.
#pragma once

#include "docimage/sheet/sheet_corners.h"

#include <opencv2/core/types.hpp>

namespace doccam {

struct SheetGeometry {
    cv::Rect bounds; // upright box around the corners
    cv::Size page;   // the sheet's sides once it is straight
    float angle = 0; // degrees clockwise that straighten it: 0 to 45, or 315 and more
};

// Measures a sheet by its corners. Any thread.
SheetGeometry measureSheet(const SheetCorners& corners);

} // namespace doccam
