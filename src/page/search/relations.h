// How quadrilaterals of the reduced picture lie to each other.
#pragma once

#include "page/search/evidence/evidence.h"
#include "page/sheet.h"

namespace doccam::page {

// Whether one has its middle in the other: sheets may lie on each other, but one found is not found
// again.
bool overlaps(const Corners& one, const Corners& other);

// Whether both may be the same sheet, with a side on another line.
bool isVariant(const Corners& one, const Corners& other);

// But for a few pixels.
bool encloses(const Corners& outer, const Corners& inner);

// Whether rest is what part leaves of whole, both beside one line.
bool completes(const Corners& rest, const Corners& part, const Corners& whole);

// Whether inner is a part of outer, with one side of it as its own.
bool sharesSideInside(const Corners& inner, const Corners& outer);

// Whether both are about as large, and the gap between the sides that face each other looks as past
// its end.
bool areSideBySide(const Corners& one, const Corners& other, const Evidence& evidence);

} // namespace doccam::page
