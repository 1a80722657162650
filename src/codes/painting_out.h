// Hiding codes that have been read, so that readers see the others.
#pragma once

#include "codes/sighting.h"

#include <opencv2/core/mat.hpp>

namespace doccam::codes {

// Fills the code's place, and a little around it, with the level of the paper around it.
void paintOut(cv::Mat& grey, const Sighting& code);

} // namespace doccam::codes
