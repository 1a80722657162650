// How a page is made of a frame.
#pragma once

#include "camera/page_settings.h"

#include <doccam/page.h>

#include <opencv2/core/types.hpp>

#include <array>
#include <optional>

namespace doccam::host {

enum class Look { kPhoto = DOCCAM_LOOK_PHOTO, kPaper = DOCCAM_LOOK_PAPER };

// What of a picture becomes a page.
enum class Crop {
    kNone,      // all of it
    kSheet,     // the sheet that the page engine finds
    kRectangle, // like a still: the smallest rectangle around the largest bright shape
};

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
