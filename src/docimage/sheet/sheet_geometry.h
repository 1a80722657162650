// A sheet's position, size and tilt, from its corners.
#pragma once

#include "docimage/sheet/sheet_corners.h"

#include <opencv2/core/types.hpp>

namespace doccam {

struct SheetGeometry {
    cv::Rect bounds; // bounding box of the corners
    cv::Size page;   // size of the straightened sheet
    float angle = 0; // clockwise rotation that straightens it: 0 to 45, or 315 and more
};

// Measures a sheet by its corners. Any thread.
SheetGeometry measureSheet(const SheetCorners& corners);

} // namespace doccam
