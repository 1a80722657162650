// The four corners of a detected sheet, and their conversion to a list of coordinates.
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

} // namespace doccam
