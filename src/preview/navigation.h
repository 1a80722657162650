// Moving the view while a camera streams. The next frame shows the result.
//
// Each returns 0, or -1 and changes nothing while no camera streams. Any thread.
#pragma once

namespace doccam {

// Drags the picture by form pixels.
int pan(int dx, int dy);

int zoomIn();
int zoomOut();
int showTrueSize();
int showBestSize();

// Turn the frames by a quarter, too, and drop those that are still on their way as they were.
int turnViewLeft();
int turnViewRight();

} // namespace doccam
