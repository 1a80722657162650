// Rendering rows of a turned picture, once for each instruction set.
#pragma once

#include "base/dispatch.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace doccam {

enum class SampleOrder { kKept, kReversed };

// Places in the source are counted in 1024ths of a pixel and cut off to 32nds, each way.
inline constexpr int kPlaceShift = 10;
inline constexpr int kFractionShift = 5;

// Where the pixels of a row lie in the source, and what is there. At each place two pixels more to
// the right and one more below can be read. The source has fewer bytes than an int can count.
struct RotationRow {
    const unsigned char* source = nullptr; // three samples a pixel
    int step = 0;                          // bytes from row to row of the source
    int across = 0, down = 0;              // of the row's beginning
    const int* acrossFrom = nullptr;       // from there, by pixel
    const int* downFrom = nullptr;
    int count = 0;
};

struct RotationKernels {
    InstructionSet instructionSet;

    // Each pixel is a blend of the four pixels around its place.
    void (*blend)(const RotationRow& row, SampleOrder order, unsigned char* target);
};

// Those that this machine can run, the narrowest vectors first. Their results are the same.
std::vector<RotationKernels> allRotationKernels();

// The one with the widest vectors.
const RotationKernels& rotationKernels();

// A place between two pixels, in 32nds of the way to the second.
[[gnu::always_inline]] inline std::int16_t fractionOf(int place) {
    constexpr int kMask = (1 << kFractionShift) - 1;
    return static_cast<std::int16_t>((place >> (kPlaceShift - kFractionShift)) & kMask);
}

// One sample of each of two pixels side by side makes the one between them, in 32nds. Sixteen bits
// are enough for all that is reckoned with here and below, so that vectors hold many.
[[gnu::always_inline]] inline std::int16_t blendAlong(std::int16_t left, std::int16_t right,
                                                      std::int16_t fraction) {
    const auto way = static_cast<std::int16_t>((right - left) * fraction);
    return static_cast<std::int16_t>((left << kFractionShift) + way);
}

// Two such samples, one above the other, make the one between them, rounded to the nearest. The way
// to the lower one, rounded down, is the upper half of a product.
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
