// Quadrilaterals that lines form.
#pragma once

#include "page/search/candidate.h"
#include "page/search/lines.h"

#include <vector>

namespace doccam::page {

// The best supported quadrilaterals that a sheet may have in perspective, the best first.
std::vector<Candidate> candidatesOf(const std::vector<SupportedLine>& lines, cv::Size picture,
                                    std::size_t maximum);

} // namespace doccam::page
