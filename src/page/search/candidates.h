// Quadrilaterals that lines form.
#pragma once

#include "page/search/lines.h"
#include "page/sheet.h"

#include <vector>

namespace doccam::page {

struct Candidate {
    Corners corners; // in the reduced picture
    double support;  // how much of its sides lies on edges, 0 to 1
    bool cut;        // one side is a border of the picture
};

// The best supported quadrilaterals that a sheet may have in perspective, the best first.
std::vector<Candidate> candidatesOf(const std::vector<SupportedLine>& lines, cv::Size picture,
                                    std::size_t maximum);

} // namespace doccam::page
