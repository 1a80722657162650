// All codes of a picture.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

namespace doccam::codes {

struct CodesRead {
    Sightings codes;      // from top to bottom
    bool complete = true; // false: the time ran out before everything had been tried
};

// Reads the codes of an 8-bit grey picture whose symbologies are wanted. After a first pass, which
// is always made, others go on for at most that many seconds since the call. Any thread.
CodesRead readCodes(const cv::Mat& grey, SymbologySet wanted, double seconds);

} // namespace doccam::codes
