// The sheets in a frame.
#pragma once

#include "pages/recipe.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::host {

struct FoundSheet {
    SheetCorners corners;  // outside of the frame where the sheet is cut
    double confidence = 0; // 0 to 1
};

// At most maximum sheets of the blue-first or grey frame, the surest first. Throws Failure if there
// is not enough memory.
std::vector<FoundSheet> findSheets(const cv::Mat& frame, int maximum);

} // namespace doccam::host
