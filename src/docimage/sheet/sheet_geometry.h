// A sheet's corners, and its position, size and tilt from them.
#pragma once

#include <opencv2/core/types.hpp>

#include <array>

namespace doccam {

// In frame pixels, in the order of boxCorners.
using SheetCorners = std::array<cv::Point, 4>;

// From and to x0, y0 ... x3, y3.
inline SheetCorners cornersFrom(const int* coordinates) {
    SheetCorners corners;
    for (cv::Point& corner : corners) {
        corner.x = *coordinates++;
        corner.y = *coordinates++;
    }
    return corners;
}

inline void storeCorners(const SheetCorners& corners, int* coordinates) {
    for (const cv::Point corner : corners) {
        *coordinates++ = corner.x;
        *coordinates++ = corner.y;
    }
}

struct SheetGeometry {
    cv::Rect bounds; // bounding box of the corners
    cv::Size page;   // size of the straightened sheet
    float angle = 0; // clockwise rotation that straightens it: 0 to 45, or 315 and more
};

SheetGeometry measureSheet(const SheetCorners& corners);

} // namespace doccam
