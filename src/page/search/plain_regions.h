// Smooth regions, as a sheet is on a cloth.
#pragma once

#include "page/search/evidence/evidence.h"

#include <vector>

namespace doccam::page {

// About the corners of the largest ones, clockwise, in the reduced picture.
std::vector<Corners> plainRegions(const Evidence& evidence);

} // namespace doccam::page
