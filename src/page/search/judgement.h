// How much a quadrilateral looks like a sheet of paper.
#pragma once

#include "page/search/candidates.h"
#include "page/search/evidence.h"

namespace doccam::page {

// 0 to 1; below kLeastConfidence it is no sheet.
double confidenceIn(const Candidate& candidate, const Evidence& evidence);

inline constexpr double kLeastConfidence = 0.5;

// Whether the sheet goes on from part to whole, which encloses it: what lies between their sides
// looks like the inside of part rather than like the outside of whole.
bool continuesTo(const Corners& whole, const Corners& part, const Evidence& evidence);

} // namespace doccam::page
