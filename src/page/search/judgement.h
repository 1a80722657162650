// How much a quadrilateral looks like a sheet of paper.
#pragma once

#include "page/search/candidates.h"
#include "page/search/evidence.h"

namespace doccam::page {

struct Judgement {
    double confidence = 0; // 0 to 1; below kLeastConfidence it is no sheet
    double contrast = 0;   // levels between inside and outside, of the faintest side
    double background = 0; // how much alike its surroundings are on all sides, 0 to 1
};

Judgement judgementOf(const Candidate& candidate, const Evidence& evidence);

inline constexpr double kLeastConfidence = 0.71;

// Whether the sheet goes on from part to whole, which encloses it and whose faintest side has that
// contrast: beyond the sides of part that are not those of whole it looks as inside.
bool continuesTo(const Corners& whole, const Corners& part, double contrast,
                 const Evidence& evidence);

} // namespace doccam::page
