// Sides of a candidate, each fitted again to the edges between its own corners.
#pragma once

#include "page/search/candidates.h"
#include "page/search/evidence.h"

namespace doccam::page {

// The lines through a picture are fitted to all edges along them: those of a pattern beyond a small
// sheet pull them off its sides.
Candidate withRefinedSides(const Candidate& candidate, const Evidence& evidence);

} // namespace doccam::page
