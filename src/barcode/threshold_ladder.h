// The fixed thresholds tried on a picture whose code is hard to read.
#pragma once

#include <vector>

namespace doccam {

// The thresholds from otsu, 0 to 255, up to at most 239 in steps of 20. Empty if otsu is above 239.
std::vector<int> thresholdLadder(int otsu);

} // namespace doccam
