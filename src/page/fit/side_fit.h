// Fitting the sides of a sheet in the full picture.
#pragma once

#include "page/sheet.h"

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam::page {

struct FittedSheet {
    Corners corners;
    double
        support; // the part of the sides within tolerance of an edge, 0 to 1: of the weakest side
};

// Moves each side of corners, within reach pixels, to the edge of the paper there, despite fingers
// and folded corners. Sides on the picture's border stay. None if a side is not found.
std::optional<FittedSheet> fitSides(const cv::Mat& picture, const Corners& corners, int reach,
                                    double tolerance = 3);

} // namespace doccam::page
