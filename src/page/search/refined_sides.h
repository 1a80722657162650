// A candidate whose sides are fitted to the edges between its own corners.
#pragma once

#include "page/search/candidate.h"
#include "page/search/evidence/evidence.h"

namespace doccam::page {

// The lines through a picture are fitted to all edges along them: those of a pattern beyond a small
// sheet pull them off its sides. reach is how far from the sides given the edges may lie, in pixels
// of the reduced picture. Sides on its border stay there.
Candidate withRefinedSides(const Corners& corners, const Evidence& evidence, int reach = 4);

} // namespace doccam::page
