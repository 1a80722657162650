// Quadrilaterals around plain regions.
#pragma once

#include "page/search/candidate.h"

#include <vector>

namespace doccam::page {

// A pattern has edges all about, and where those meet a side of a sheet, the side is hardly one.
// But the region shows where the sides lie: of the lines beside it, those that may be its sides, or
// of the edges there.
std::vector<Candidate> candidatesAround(const Corners& region,
                                        const std::vector<SupportedLine>& lines,
                                        const Evidence& evidence);

} // namespace doccam::page
