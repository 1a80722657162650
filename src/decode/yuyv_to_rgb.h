// Packed YUYV to red-first pixels.
#pragma once

#include "base/dispatch.h"

#include <cstddef>
#include <vector>

namespace doccam {

// Converts width x height pixels to three bytes each, red first but for the first two pixels, which
// are blue first. Reads 4 and writes 6 bytes past the frame's end.
void convertYuyv(const unsigned char* src, unsigned char* dst, int width, int height);

// The same loop compiled for one instruction set: count pixel pairs of src, four bytes each, become
// six bytes each in dst, red first. Values above 250 come out as 255, those below 0 as 0, all
// others cut off to whole numbers. The two must not overlap.
struct YuyvKernel {
    InstructionSet instructionSet;
    void (*convert)(const unsigned char* src, unsigned char* dst, std::size_t count);
};

// The paths that this machine can run, the fastest last. All give the same bytes.
std::vector<YuyvKernel> allYuyvKernels();

} // namespace doccam
