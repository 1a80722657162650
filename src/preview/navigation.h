// Moving the view while a camera streams. The next frame shows the result.
//
// Each returns 0, or -1 without changes while no camera streams. Any thread.
#pragma once

#include "state/parts.h"

namespace doccam {

// Drags the picture by form pixels.
int pan(LibraryState& library, int dx, int dy);

int zoomIn(LibraryState& library);
int zoomOut(LibraryState& library);
int showTrueSize(LibraryState& library);
int showBestSize(LibraryState& library);

// Also turn the frames by a quarter, and drop those still in flight in the old orientation.
int turnViewLeft(LibraryState& library);
int turnViewRight(LibraryState& library);

} // namespace doccam
