// Linear codes read straight across their bars.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

namespace doccam::codes {

enum class StripWays {
    kOne,
    kAll // also reduced, and in a thin strip, until read from paper to paper
};

// Turns the bars at that place of an 8-bit grey picture upright, with what is left and right of
// them, averages their height, enlarges them if they are small, and reads them.
Sightings readAcrossBars(const cv::Mat& grey, const Corners& bars, SymbologySet wanted,
                         StripWays ways = StripWays::kAll);

// Whether there is paper left and right of the bars at that place, so that they are a whole code.
bool standsAlone(const cv::Mat& grey, const Corners& bars);

// The add-on right of the code of goods at that place; empty for none.
std::string addonBeside(const cv::Mat& grey, const Sighting& code);

} // namespace doccam::codes
