// How a page is made of a frame.
#pragma once

#include "camera/page_settings.h"

#include <doccam/page.h>

#include <opencv2/core/types.hpp>

#include <array>
#include <optional>

namespace doccam::host {

enum class Look { kPhoto = DOCCAM_LOOK_PHOTO, kPaper = DOCCAM_LOOK_PAPER };

// Clockwise from the one nearest to the top left, in the frame's pixels, whose centres are whole
// numbers.
using SheetCorners = std::array<cv::Point2d, 4>;

struct Recipe {
    std::optional<SheetCorners> corners{}; // none: the whole frame
    int turn = 0;                          // quarters, clockwise
    Look look = Look::kPaper;
    Colour colour = Colour::kColour;
    int quality = 85; // of a JPEG, 0 to 100
};

} // namespace doccam::host
