// What one reader makes of one code.
#pragma once

#include "codes/symbology.h"

#include <opencv2/core/types.hpp>

#include <array>
#include <string>
#include <vector>

namespace doccam::codes {

// Clockwise from the code's own top left, in pixels.
using Corners = std::array<cv::Point2d, 4>;

enum class ReaderName { kZbar, kZxing };

struct Sighting {
    Symbology symbology = Symbology::kQr;
    std::string text;  // UTF-8
    std::string bytes; // as encoded
    std::string addon; // digits; empty for none
    Corners corners{};
    int lines = 0; // linear codes: scan lines on which it was read
    ReaderName reader = ReaderName::kZbar;
    bool aligned =
        false; // linear codes: read straight across all of their bars, from paper to paper
};

using Sightings = std::vector<Sighting>;

} // namespace doccam::codes
