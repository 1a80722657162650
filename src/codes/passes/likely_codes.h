// Where a picture looks as if there were codes that have not been read.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::codes {

struct LikelyCode {
    Corners place{};   // of bars: across them from its first corner to its second
    bool bars = false; // or else a matrix
};

// Those that are quick to try first, then the largest; at most a few dozen. Takes a fraction of the
// time of reading.
std::vector<LikelyCode> likelyCodes(const cv::Mat& grey, const Sightings& read);

} // namespace doccam::codes
