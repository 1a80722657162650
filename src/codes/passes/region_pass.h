// Reading what looks like a code in other ways than as it is.
#pragma once

#include "codes/passes/deadline.h"
#include "codes/passes/likely_codes.h"
#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>

namespace doccam::codes {

// Ways that find most of what can be found, and all.
constexpr std::size_t kFewWays = 3;
constexpr std::size_t kAllWays = 8;

// Turns the place upright, with paper around it, and tries that many scales, thresholds and
// sharpenings one after another until something is read or the time is over.
Sightings readRegion(const cv::Mat& grey, const LikelyCode& likely, SymbologySet wanted,
                     std::size_t ways, const Deadline& deadline);

} // namespace doccam::codes
