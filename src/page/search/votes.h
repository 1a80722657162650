// Which straight lines the edges of a reduced picture lie on.
#pragma once

#include "page/line.h"
#include "page/search/evidence/evidence.h"

#include <vector>

namespace doccam::page {

// At most maximum lines, those with most edges first, without those beside a better one.
std::vector<Line> votedLines(const Evidence& evidence, std::size_t maximum);

} // namespace doccam::page
