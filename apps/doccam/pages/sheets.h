// The sheets in a frame.
#pragma once

#include "pages/recipe.h"

#include <opencv2/core/mat.hpp>

#include <optional>
#include <vector>

namespace doccam::host {

struct FoundSheet {
    SheetCorners corners;  // outside of the frame where the sheet is cut
    double confidence = 0; // 0 to 1
};

// At most maximum sheets of the blue-first or grey frame, the surest first. Throws Failure if there
// is not enough memory.
std::vector<FoundSheet> findSheets(const cv::Mat& frame, int maximum);

// The surest sheet, looked for first where it was in an earlier frame, which is quicker.
std::optional<FoundSheet> findSheetAgain(const cv::Mat& frame,
                                         const std::optional<FoundSheet>& last);

} // namespace doccam::host
