// The work on single rows of a page that takes most of a cleaning's time, once for each instruction
// set.
#pragma once

#include "base/dispatch.h"

#include <cstdint>
#include <vector>

namespace doccam {

// A row of a page on its way to white paper. Colours have three samples a pixel, blue first.
struct WhitenRowInput {
    const unsigned char* above = nullptr;
    const unsigned char* row = nullptr;
    const unsigned char* below = nullptr;
    const unsigned char* margin = nullptr; // 255 where a margin is, else 0
    const unsigned char* paper = nullptr;  // 255 where paper is, else 0
    int count = 0;                         // pixels of each of these rows
};

inline constexpr int kSurroundings = 179; // pixels, a square's side

struct PageKernels {
    InstructionSet instructionSet;

    // 255 for coloured pixels of three samples, 0 for others.
    void (*markColours)(const unsigned char* pixels, int count, unsigned char* marks);

    // 255 for nearly black pixels of three samples, 0 for others.
    void (*markDark)(const unsigned char* pixels, int count, unsigned char* marks);

    // 255 where a pixel is brighter than the mean of its surroundings less a little: paper, not
    // print. sums are those of the columns' greys before each pixel's surroundings; those at
    // kSurroundings further on include them.
    void (*markPaper)(const unsigned char* grey, const std::uint32_t* sums, int count,
                      unsigned char* paper);

    // Coloured marks sharpened, all else that is paper or margin white. Not into a row that it
    // reads, but for row.
    void (*whitenPaper)(const WhitenRowInput& row, unsigned char* result);
};

// Those that this machine can run, the narrowest vectors first. Their results are the same.
std::vector<PageKernels> allPageKernels();

// The one with the widest vectors.
const PageKernels& pageKernels();

} // namespace doccam
