// The work on single rows of a frame and of its reduced copy that takes most of an outline search's
// time, once for each instruction set.
#pragma once

#include "base/dispatch.h"

#include <array>
#include <cstdint>
#include <vector>

namespace doccam {

// Frame pixels per pixel of the reduced copy, each way.
inline constexpr int kReduction = 4;

// How far the slow changes look, each way, in pixels of the reduced copy.
inline constexpr int kBlurReach = 9;

struct SheetSearchKernels {
    using FrameRows = std::array<const unsigned char*, kReduction>;
    using SumRows = std::array<const std::uint16_t*, 2 * kBlurReach + 1>;

    InstructionSet instructionSet;

    // The grey of the means of four by four red-first pixels; count of them.
    void (*reduceToGrey)(const FrameRows& rows, int count, unsigned char* grey);

    // Weighted sums along a row, whose kBlurReach pixels before the first and after the last one
    // are read, too.
    void (*blurAlong)(const unsigned char* grey, int count, std::uint16_t* sums);

    // Frees grey of most of the slow changes, which are the weighted sums of such sums.
    void (*flatField)(const SumRows& rows, int count, unsigned char* grey);
};

// Those that this machine can run, the narrowest vectors first. Their results are the same.
std::vector<SheetSearchKernels> allSheetSearchKernels();

// The one with the widest vectors.
const SheetSearchKernels& sheetSearchKernels();

} // namespace doccam
