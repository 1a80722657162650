// The row kernels that take most of the time of an outline search, for each instruction set.
#pragma once

#include "base/dispatch.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace doccam {

// Frame pixels per pixel of the reduced copy, in each direction.
inline constexpr int kReduction = 4;

// The blur's reach in each direction, in pixels of the reduced copy.
inline constexpr int kBlurReach = 9;

struct SheetSearchKernels {
    using FrameRows = std::array<const unsigned char*, kReduction>;
    using SumRows = std::array<const std::uint16_t*, 2 * kBlurReach + 1>;

    const char* instructionSet;

    // The grey levels of count means of four by four red-first pixels.
    void (*reduceToGrey)(const FrameRows& rows, int count, unsigned char* grey);

    // Weighted sums along a row; also reads kBlurReach pixels before the first and after the last.
    void (*blurAlong)(const unsigned char* grey, int count, std::uint16_t* sums);

    // Flat-fields grey by the blurred row, which is the weighted sum of the rows' sums.
    void (*flatField)(const SumRows& rows, int count, unsigned char* grey);
};

// Subtracts 0.7 of the background's distance from mid-grey: at least 0, wraps around above 255.
[[gnu::always_inline]] inline unsigned char flatFieldedLevel(int grey, int background) {
    constexpr int kMiddleLevel = 127;
    // 0.7 in single precision, slightly less than 0.7.
    constexpr int kLift = 11744051;
    constexpr int kLiftShift = 24;
    const int lift = (kLift * (kMiddleLevel - background)) >> kLiftShift;
    return static_cast<unsigned char>(std::max(grey + lift, 0));
}

// The kernels that this machine can run, narrowest vectors first. All give the same results.
std::vector<SheetSearchKernels> allSheetSearchKernels();

} // namespace doccam
