// Reading what looks like a code in other ways than as it is.
#pragma once

#include "codes/passes/deadline.h"
#include "codes/passes/likely_codes.h"
#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

namespace doccam::codes {

// Turns the place upright, with paper around it, and tries scales, thresholds and sharpening one
// after another until something is read or the time is over.
Sightings readRegion(const cv::Mat& grey, const LikelyCode& likely, SymbologySet wanted,
                     const Deadline& deadline);

} // namespace doccam::codes
