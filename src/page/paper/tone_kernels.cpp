// Loops that the compiler vectorizes, in 16-bit lanes.
#include "page/paper/tone_kernels.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace doccam::page {

namespace {

// All values are at least 0: GCC 12 vectorizes the upper half of a signed product wrongly. Samples
// have four bits behind the point.
using Word = std::uint16_t;

constexpr Word kWhite = 255 * 16;
constexpr Word kPale = 225 * 16; // paper is stretched from here
constexpr Word kInk = 128 * 16;  // and darkened from here

[[gnu::always_inline]] inline Word upperHalf(Word left, Word right) {
    return static_cast<Word>((std::uint32_t{left} * right) >> 16);
}

[[gnu::always_inline]] inline Word least(Word left, Word right) {
    return left < right ? left : right;
}

// left - right, or 0.
[[gnu::always_inline]] inline Word excess(Word left, Word right) {
    return left > right ? static_cast<Word>(left - right) : Word{0};
}

[[gnu::always_inline]] inline Word between(Word above, Word below, Word weight) {
    const auto rest = static_cast<Word>(0xFFFF - weight);
    return static_cast<Word>(upperHalf(above, rest) + upperHalf(below, weight));
}

// The value with share, in parts of 16384, of what paper changes.
[[gnu::always_inline]] inline Word toned(Word value, Word share) {
    const auto lift = static_cast<Word>(excess(value, kPale) >> 1);
    const auto drop = static_cast<Word>(static_cast<Word>(excess(kInk, value) * 5) >> 3);
    const auto lifted = static_cast<Word>(value + upperHalf(static_cast<Word>(lift << 2), share));
    return excess(lifted, upperHalf(static_cast<Word>(drop << 2), share));
}

[[gnu::always_inline]] inline void evenRow(const unsigned char* __restrict from,
                                           const GridRow& gain, const GridRow& paper, int count,
                                           unsigned char* __restrict to) {
    const Word* const gainAbove = gain.above;
    const Word* const gainBelow = gain.below;
    const Word* const paperAbove = paper.above;
    const Word* const paperBelow = paper.below;
    const Word weight = gain.weight;
    for (int i = 0; i < count; ++i) {
        const Word factor = between(gainAbove[i], gainBelow[i], weight);
        const Word share = between(paperAbove[i], paperBelow[i], weight);
        const Word plain = least(upperHalf(static_cast<Word>(from[i] << 8), factor), kWhite);
        const auto rounded = static_cast<Word>(static_cast<Word>(toned(plain, share) + 8) >> 4);
        to[i] = static_cast<unsigned char>(least(rounded, 255));
    }
}

[[gnu::always_inline]] inline void thresholdRow(const unsigned char* grey, const GridRow& levels,
                                                int count, unsigned char* __restrict to) {
    const Word* const above = levels.above;
    const Word* const below = levels.below;
    const Word weight = levels.weight;
    for (int i = 0; i < count; ++i) {
        to[i] = grey[i] < between(above[i], below[i], weight) ? 0 : 255;
    }
}

[[gnu::always_inline]] inline void columnExtremes(const unsigned char* rows, std::size_t stride,
                                                  int count, unsigned char* __restrict brightest,
                                                  unsigned char* __restrict darkest) {
    const unsigned char* const second = rows + stride;
    const unsigned char* const third = second + stride;
    const unsigned char* const fourth = third + stride;
    for (int i = 0; i < count; ++i) {
        brightest[i] = std::max(std::max(rows[i], second[i]), std::max(third[i], fourth[i]));
        darkest[i] = std::min(std::min(rows[i], second[i]), std::min(third[i], fourth[i]));
    }
}

[[gnu::always_inline]] inline void removeSpecks(const unsigned char* above,
                                                const unsigned char* row,
                                                const unsigned char* below, int count,
                                                unsigned char* __restrict to) {
    for (int i = 0; i < count; ++i) {
        const int around = above[i - 1] & above[i] & above[i + 1] & row[i - 1] & row[i + 1] &
                           below[i - 1] & below[i] & below[i + 1];
        to[i] = static_cast<unsigned char>(row[i] | around);
    }
}

} // namespace

std::vector<ToneKernels> allToneKernels() {
    return supportedKernels<ToneKernels, Widest::kAvx512, evenRow, thresholdRow, columnExtremes,
                            removeSpecks>();
}

} // namespace doccam::page
