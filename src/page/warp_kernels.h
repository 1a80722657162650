// Interpolating runs of pixels, which takes most of the time of a warp, for each instruction set.
#pragma once

#include "base/dispatch.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace doccam::page {

inline constexpr int kWarpRun = 16;    // pixels
inline constexpr int kPlaceBits = 16;  // behind the point of a place
inline constexpr int kWeightBits = 7;  // the bits of them that count
inline constexpr int kRightMargin = 2; // columns that must follow a place; one row must

// A place in a picture, in parts of 1 << kPlaceBits of a pixel.
struct WarpPlace {
    std::int64_t x;
    std::int64_t y;
};

inline WarpPlace stepBetween(const WarpPlace& start, const WarpPlace& end) {
    return {(end.x - start.x) / kWarpRun, (end.y - start.y) / kWarpRun};
}

inline std::uint16_t weightOf(std::int64_t place) {
    return static_cast<std::uint16_t>((place >> (kPlaceBits - kWeightBits)) &
                                      ((1 << kWeightBits) - 1));
}

// Runs of kWarpRun pixels each, in even steps from a place to the next.
struct WarpRuns {
    const unsigned char* picture;
    std::ptrdiff_t stride;
    const WarpPlace* places; // one more than runs
    int count;               // at least 1
};

// Between top and bottom, each between its left and its right sample; weights of the right and of
// the bottom one in parts of 1 << kWeightBits. In 16 bits, of which vectors hold many.
[[gnu::always_inline]] inline unsigned char blended(unsigned char topLeft, unsigned char topRight,
                                                    unsigned char bottomLeft,
                                                    unsigned char bottomRight, std::uint16_t right,
                                                    std::uint16_t down) {
    using Word = std::uint16_t;
    constexpr int kOne = 1 << kWeightBits;
    const auto left = static_cast<Word>(kOne - right);
    // Twice the sum, so that the upper half of a product with 1 << 15 is the sum itself.
    const auto top = static_cast<Word>(static_cast<Word>(topLeft * left + topRight * right) << 1);
    const auto bottom =
        static_cast<Word>(static_cast<Word>(bottomLeft * left + bottomRight * right) << 1);
    const auto up = static_cast<Word>((kOne - down) << (15 - kWeightBits));
    const auto low = static_cast<Word>(down << (15 - kWeightBits));
    const auto sum = static_cast<Word>(static_cast<Word>((std::uint32_t{top} * up) >> 16) +
                                       static_cast<Word>((std::uint32_t{bottom} * low) >> 16));
    return static_cast<unsigned char>(static_cast<Word>(sum + kOne / 2) >> kWeightBits);
}

struct WarpKernels {
    const char* instructionSet;

    // The runs' pixels, of three samples or of one. All places are in the picture, with the margin
    // on the right and a row below.
    void (*colourRuns)(const WarpRuns& runs, unsigned char* to);
    void (*greyRuns)(const WarpRuns& runs, unsigned char* to);
};

// The kernels that this machine can run, narrowest vectors first. All give the same results.
std::vector<WarpKernels> allWarpKernels();

} // namespace doccam::page
