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

// How much the four pixels around a place count.
struct BlendWeights {
    [[gnu::always_inline]] BlendWeights(int across, int down) {
        constexpr int kWhole = 1 << kFractionShift;
        constexpr int kShift = kPlaceShift - kFractionShift;
        const int right = (across >> kShift) & (kWhole - 1);
        const int below = (down >> kShift) & (kWhole - 1);
        upperLeft = (kWhole - below) * (kWhole - right);
        upperRight = (kWhole - below) * right;
        lowerLeft = below * (kWhole - right);
        lowerRight = below * right;
    }

    // Of one sample of each pixel.
    [[gnu::always_inline]] unsigned char blend(int ul, int ur, int ll, int lr) const {
        constexpr int kShift = 2 * kFractionShift;
        const int sum = upperLeft * ul + upperRight * ur + lowerLeft * ll + lowerRight * lr;
        return static_cast<unsigned char>((sum + (1 << (kShift - 1))) >> kShift);
    }

    int upperLeft, upperRight, lowerLeft, lowerRight;
};

} // namespace doccam
