// Rendering rows of a turned picture, once for each instruction set.
#pragma once

#include <cstddef>
#include <vector>

namespace doccam {

enum class SampleOrder { kKept, kReversed };

// Places in the source are counted in 1024ths of a pixel and cut off to 32nds, each way.
inline constexpr int kPlaceShift = 10;
inline constexpr int kFractionShift = 5;

// Where the pixels of a row lie in the source, and what is there. At each place two pixels more to
// the right and one more below can be read.
struct TurnedRow {
    const unsigned char* source = nullptr; // three samples a pixel
    std::ptrdiff_t step = 0;               // bytes from row to row of the source
    int across = 0, down = 0;              // of the row's beginning
    const int* acrossFrom = nullptr;       // from there, by pixel
    const int* downFrom = nullptr;
    int count = 0;
};

struct TurnedRows {
    const char* name; // of the instruction set

    // Each pixel is a blend of the four pixels around its place.
    void (*blend)(const TurnedRow& row, SampleOrder order, unsigned char* target);
};

// Those that this machine can run, the narrowest vectors first. Their results are the same.
std::vector<TurnedRows> allTurnedRows();

// The one with the widest vectors.
const TurnedRows& turnedRows();

// A place between four pixels, in 32nds of the way to the right and down.
struct Blend {
    [[gnu::always_inline]] Blend(int across, int down) {
        constexpr int kShift = kPlaceShift - kFractionShift;
        constexpr int kMask = (1 << kFractionShift) - 1;
        right = (across >> kShift) & kMask;
        below = (down >> kShift) & kMask;
    }

    // One sample of each pixel makes the one at the place, rounded to the nearest.
    [[gnu::always_inline]] unsigned char operator()(int upperLeft, int upperRight, int lowerLeft,
                                                    int lowerRight) const {
        constexpr int kWhole = 1 << kFractionShift;
        constexpr int kHalf = kWhole * kWhole / 2;
        const int upper = kWhole * upperLeft + (upperRight - upperLeft) * right;
        const int lower = kWhole * lowerLeft + (lowerRight - lowerLeft) * right;
        const int sum = kWhole * upper + (lower - upper) * below;
        return static_cast<unsigned char>((sum + kHalf) >> (2 * kFractionShift));
    }

    int right, below;
};

} // namespace doccam
