// Rendering rows of a turned picture, once for each instruction set.
#pragma once

#include "base/dispatch.h"

#include <cstdint>
#include <vector>

namespace doccam {

enum class SampleOrder { kKept, kReversed };

// Source positions are in 1024ths of a pixel and truncated to 32nds, in both directions.
inline constexpr int kPlaceShift = 10;
inline constexpr int kFractionShift = 5;

// The source positions of a row's pixels, and the source. At each position two more pixels to the
// right and one more below must be readable. The source has fewer bytes than an int can count.
struct RotationRow {
    const unsigned char* source = nullptr; // three samples per pixel
    int step = 0;                          // bytes from row to row of the source
    int across = 0, down = 0;              // position of the row's start
    const int* acrossFrom = nullptr;       // offsets from there, per pixel
    const int* downFrom = nullptr;
    int count = 0;
};

struct RotationKernels {
    const char* instructionSet;

    // Blends the four pixels around each position.
    void (*blend)(const RotationRow& row, SampleOrder order, unsigned char* target);
};

// The kernels that this machine can run, narrowest vectors first. All give the same results.
std::vector<RotationKernels> allRotationKernels();

// The position between two pixels, in 32nds of the distance.
[[gnu::always_inline]] inline std::int16_t fractionOf(int place) {
    constexpr int kMask = (1 << kFractionShift) - 1;
    return static_cast<std::int16_t>((place >> (kPlaceShift - kFractionShift)) & kMask);
}

// Interpolates horizontally between samples of two pixels, in 32nds. Here and below, 16 bits
// suffice for all intermediate values, so that vectors hold many.
[[gnu::always_inline]] inline std::int16_t blendAlong(std::int16_t left, std::int16_t right,
                                                      std::int16_t fraction) {
    const auto way = static_cast<std::int16_t>((right - left) * fraction);
    return static_cast<std::int16_t>((left << kFractionShift) + way);
}

// Interpolates vertically between two such values, rounded to nearest. The step towards the lower
// one, rounded down, is the upper half of a product.
[[gnu::always_inline]] inline unsigned char blendDown(std::int16_t upper, std::int16_t lower,
                                                      std::int16_t fraction) {
    constexpr int kHalf = 1 << (kFractionShift - 1);
    const auto fourfold = static_cast<std::int16_t>((lower - upper) * 4);
    const auto shifted = static_cast<std::int16_t>(fraction << 9);
    const auto way = static_cast<std::int16_t>((fourfold * shifted) >> 16);
    const auto sum = static_cast<std::int16_t>(upper + way + kHalf);
    return static_cast<unsigned char>(sum >> kFractionShift);
}

} // namespace doccam
