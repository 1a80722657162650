// What lies under the camera, small and straight, for telling sheets apart.
#pragma once

#include "pages/recipe.h"

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam::host {

struct SheetView {
    cv::Mat ink;       // CV_32F, 1 on paper, less on print, whatever the light
    cv::Mat covered;   // CV_8U, not 0 where no paper is seen: a hand, or a picture
    double detail = 1; // pixels of the frame to one of the view
};

// The sheet of the 8-bit, red-first frame, or all of it without corners, at a size at which a line
// of 10-point print shows.
SheetView viewOf(const cv::Mat& frame, const std::optional<SheetCorners>& corners);

} // namespace doccam::host
