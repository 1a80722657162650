// Loops that the compiler turns into vector instructions.
#include "docimage/sheet/sheet_search_kernels.h"

#include "base/instruction_sets.h"
#include "docimage/pixels/grey_weights.h"
#include "docimage/pixels/lifted_level.h"

#include <cstddef>
#include <cstring>

namespace doccam {
namespace {

constexpr int kChannels = 3;
constexpr int kPixel = kReduction * kChannels; // samples in a row of the frame

constexpr int kBlock = 32; // pixels of the reduced copy
constexpr int kBlockSamples = kBlock * kPixel;

// The sums of four samples of one colour one below the other.
using Columns = std::uint16_t[kBlockSamples + kPixel];

[[gnu::always_inline]] inline void addRows(const ReducedRows::FrameRows& rows, int begin,
                                           int samples, Columns& sums) {
    for (int i = 0; i < samples; ++i) {
        sums[i] = static_cast<std::uint16_t>(rows[0][begin + i] + rows[1][begin + i] +
                                             rows[2][begin + i] + rows[3][begin + i]);
    }
}

// Each sum plus the three of the same colour that follow. Only every twelfth is of use; that the
// loop has no gaps is worth more.
[[gnu::always_inline]] inline void addNeighbours(const Columns& sums, int samples, Columns& wide) {
    for (int i = 0; i < samples; ++i) {
        wide[i] = static_cast<std::uint16_t>(sums[i] + sums[i + kChannels] +
                                             sums[i + 2 * kChannels] + sums[i + 3 * kChannels]);
    }
}

// A sixteenth; halves are rounded to the even number.
[[gnu::always_inline]] inline int meanOf(int sum) {
    return (sum + 7 + ((sum >> 4) & 1)) >> 4;
}

[[gnu::always_inline]] inline void reduceBlock(const ReducedRows::FrameRows& rows, int first,
                                               int count, unsigned char* grey) {
    Columns sums, wide;
    addRows(rows, first * kPixel, count * kPixel, sums);
    std::memset(sums + std::ptrdiff_t{kPixel} * count, 0, kPixel * sizeof sums[0]);
    addNeighbours(sums, count * kPixel, wide);
    // Four at a time, since the compiler takes places that lie so far apart one by one.
    constexpr int kTaken = 4;
    std::uint16_t pixels[kBlock * kTaken];
    for (int i = 0; i < count; ++i) {
        std::memcpy(pixels + std::ptrdiff_t{kTaken} * i, wide + std::ptrdiff_t{kPixel} * i,
                    kTaken * sizeof pixels[0]);
    }
    for (int i = 0; i < count; ++i) {
        const std::uint16_t* const pixel = pixels + std::ptrdiff_t{kTaken} * i;
        grey[first + i] = greyLevel(meanOf(pixel[0]), meanOf(pixel[1]), meanOf(pixel[2]));
    }
}

// The last block begins before the previous one ends, rather than being shorter.
[[gnu::always_inline]] inline void reduceRows(const ReducedRows::FrameRows& rows, int count,
                                              unsigned char* grey) {
    if (count < kBlock) {
        reduceBlock(rows, 0, count, grey);
        return;
    }
    int first = 0;
    for (; first + kBlock <= count; first += kBlock) {
        reduceBlock(rows, first, kBlock, grey);
    }
    if (first < count) {
        reduceBlock(rows, count - kBlock, kBlock, grey);
    }
}

// From the farthest pixels inwards, in parts of 256, both ways: the image library's bell curve with
// an aperture of 21, whose outermost pixels weigh nothing.
constexpr int kWeights[kBlurReach] = {2, 2, 4, 6, 11, 15, 20, 25, 28};
constexpr int kMiddleWeight = 30;
constexpr int kWeightsShift = 16; // of both ways together

[[gnu::always_inline]] inline void blurRow(const unsigned char* grey, int count,
                                           std::uint16_t* sums) {
    for (int i = 0; i < count; ++i) {
        auto sum = static_cast<std::uint16_t>(kMiddleWeight * grey[i]);
        for (int k = 0; k < kBlurReach; ++k) {
            const int away = kBlurReach - k;
            sum = static_cast<std::uint16_t>(sum + kWeights[k] * (grey[i - away] + grey[i + away]));
        }
        sums[i] = sum;
    }
}

// The first done pixels have been lifted already. All rows are added up for a pixel before the
// next: row after row, the compiler would take pixels one by one.
[[gnu::always_inline]] inline void liftBlock(const ReducedRows::SumRows& rows, int first, int count,
                                             int done, unsigned char* grey) {
    std::uint32_t sums[kBlock];
    for (int i = 0; i < count; ++i) {
        const int x = first + i;
        std::uint32_t sum = 1U << (kWeightsShift - 1);
        for (std::size_t k = 0; k < kBlurReach; ++k) {
            const std::size_t opposite = rows.size() - 1 - k;
            const std::uint32_t both = std::uint32_t{rows[k][x]} + rows[opposite][x];
            sum += static_cast<std::uint32_t>(kWeights[k]) * both;
        }
        sums[i] = sum + std::uint32_t{kMiddleWeight} * rows[kBlurReach][x];
    }
    for (int i = done; i < count; ++i) {
        const int background = static_cast<int>(sums[i] >> kWeightsShift);
        grey[first + i] = liftedLevel(grey[first + i], background);
    }
}

[[gnu::always_inline]] inline void liftRow(const ReducedRows::SumRows& rows, int count,
                                           unsigned char* grey) {
    if (count < kBlock) {
        liftBlock(rows, 0, count, 0, grey);
        return;
    }
    int first = 0;
    for (; first + kBlock <= count; first += kBlock) {
        liftBlock(rows, first, kBlock, 0, grey);
    }
    if (first < count) {
        liftBlock(rows, count - kBlock, kBlock, first - (count - kBlock), grey);
    }
}

constexpr ReducedRows kPlain = {"baseline", reduceRows, blurRow, liftRow};

#ifdef __x86_64__

[[gnu::target("avx2")]] void reduceWithAvx2(const ReducedRows::FrameRows& rows, int count,
                                            unsigned char* grey) {
    reduceRows(rows, count, grey);
}

[[gnu::target("avx2")]] void blurWithAvx2(const unsigned char* grey, int count,
                                          std::uint16_t* sums) {
    blurRow(grey, count, sums);
}

[[gnu::target("avx2")]] void liftWithAvx2(const ReducedRows::SumRows& rows, int count,
                                          unsigned char* grey) {
    liftRow(rows, count, grey);
}

constexpr ReducedRows kAvx2 = {"AVX2", reduceWithAvx2, blurWithAvx2, liftWithAvx2};

[[DOCCAM_TARGET_AVX512]] void reduceWithAvx512(const ReducedRows::FrameRows& rows, int count,
                                               unsigned char* grey) {
    reduceRows(rows, count, grey);
}

[[DOCCAM_TARGET_AVX512]] void blurWithAvx512(const unsigned char* grey, int count,
                                             std::uint16_t* sums) {
    blurRow(grey, count, sums);
}

[[DOCCAM_TARGET_AVX512]] void liftWithAvx512(const ReducedRows::SumRows& rows, int count,
                                             unsigned char* grey) {
    liftRow(rows, count, grey);
}

constexpr ReducedRows kAvx512 = {"AVX-512", reduceWithAvx512, blurWithAvx512, liftWithAvx512};

#endif

} // namespace

std::vector<ReducedRows> allReducedRows() {
    std::vector<ReducedRows> all{kPlain};
#ifdef __x86_64__
    if (hasAvx2()) {
        all.push_back(kAvx2);
    }
    if (hasAvx512()) {
        all.push_back(kAvx512);
    }
#endif
    return all;
}

const ReducedRows& reducedRows() {
    static const ReducedRows widest = allReducedRows().back();
    return widest;
}

} // namespace doccam
