// The frame sizes that a camera offers in each pixel format.
#pragma once

namespace doccam {

// Lists the sizes of the camera at index, which ends an open session, and prints each. How many
// there are for the selected format; 0 on any failure. Host thread.
int enumerateSizes(int index);

// Whether any size is known, for MJPEG or YUYV.
bool hasSizes();

// How many sizes are known for the selected format.
int selectedSizeCount();

// Stores the size at index of the selected format; one past the end stores nothing. 0; -2 when no
// size is known at all, -1 when none is for the selected format.
int sizeAt(int index, int* width, int* height);

} // namespace doccam
