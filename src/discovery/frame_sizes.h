// The frame sizes that a camera offers in each pixel format.
#pragma once

#include "state/parts.h"

namespace doccam {

// Replaces the known formats and sizes with those of the open camera, which it prints. Host thread.
void listSizes(int descriptor, record::Discovery& discovery);

// Appends the enlarged size to those of the selected format if they end at the full size.
void appendEnlargedSize(record::Discovery& discovery, const record::Settings& settings);

// Whether any size is known, for MJPEG or YUYV.
bool hasSizes(const record::Discovery& discovery);

// The number of sizes known for the selected format.
int selectedSizeCount(record::Discovery& discovery, const record::Settings& settings);

// Stores the size at index of the selected format; an index out of range stores nothing. Returns 0;
// -2 if no size is known at all, -1 if none is for the selected format.
int sizeAt(record::Discovery& discovery, const record::Settings& settings, int index, int* width,
           int* height);

} // namespace doccam
