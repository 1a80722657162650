// The fixed thresholds that are tried on a picture whose code is hard to read.
#pragma once

#include <vector>

namespace doccam {

// The thresholds from otsu, the picture's own, upwards in steps of 20 to 239 at most. Empty when
// otsu is above that. otsu lies within 0 to 255.
std::vector<int> thresholdLadder(int otsu);

} // namespace doccam
