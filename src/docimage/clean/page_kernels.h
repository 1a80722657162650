// The row kernels that take most of the time of page cleaning, for each instruction set.
#pragma once

#include "base/dispatch.h"

#include <cstdint>
#include <vector>

namespace doccam {

// The input for whitening one row. Colours have three samples per pixel, blue first.
struct WhitenRowInput {
    const unsigned char* above = nullptr;
    const unsigned char* row = nullptr;
    const unsigned char* below = nullptr;
    const unsigned char* margin = nullptr; // 255 in the margins, else 0
    const unsigned char* paper = nullptr;  // 255 on paper, else 0
    int count = 0;                         // pixels per row
};

inline constexpr int kSurroundings = 179; // side of the square, in pixels

struct PageKernels {
    const char* instructionSet;

    // 255 for coloured pixels of three samples, 0 for others.
    void (*markColours)(const unsigned char* pixels, int count, unsigned char* marks);

    // 255 for nearly black pixels of three samples, 0 for others.
    void (*markDark)(const unsigned char* pixels, int count, unsigned char* marks);

    // 255 on paper, brighter than its surroundings' mean less a constant. sums are prefix sums over
    // columns: at a pixel before its surroundings, kSurroundings further including them.
    void (*markPaper)(const unsigned char* grey, const std::uint32_t* sums, int count,
                      unsigned char* paper);

    // Sharpens coloured marks, whitens paper and margins. result may be row itself, no other input.
    void (*whitenPaper)(const WhitenRowInput& row, unsigned char* result);
};

// The kernels that this machine can run, narrowest vectors first. All give the same results.
std::vector<PageKernels> allPageKernels();

} // namespace doccam
