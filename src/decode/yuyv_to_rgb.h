// Converting packed YUYV to red-first pixels.
#pragma once

#include "base/dispatch.h"

#include <cstddef>
#include <vector>

namespace doccam {

// Converts width x height pixels to three bytes each, red first except for the first two pixels,
// which are blue first. Reads 4 and writes 6 bytes past the frame's end.
void convertYuyv(const unsigned char* src, unsigned char* dst, int width, int height);

// Converts count pixel pairs of four bytes to six bytes each, red first. Values above 250 become
// 255, those below 0 become 0, all others are truncated. src and dst must not overlap.
struct YuyvKernel {
    const char* instructionSet;
    void (*convert)(const unsigned char* src, unsigned char* dst, std::size_t count);
};

// The kernels that this machine can run, fastest last. All give the same bytes.
std::vector<YuyvKernel> allYuyvKernels();

} // namespace doccam
