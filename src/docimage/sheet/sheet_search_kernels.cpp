// Loops that the compiler vectorizes.
#include "docimage/sheet/sheet_search_kernels.h"

#include "base/dispatch.h"
#include "base/pixel.h"
#include "docimage/pixels/grey_weights.h"

#include <cstddef>
#include <cstring>

namespace doccam {
namespace {

constexpr int kPixel = kReduction * kChannels; // samples per frame row of one reduced pixel

constexpr int kBlock = 32; // pixels of the reduced copy
constexpr int kBlockSamples = kBlock * kPixel;

// Sums of four vertically adjacent samples of one colour.
using Columns = std::uint16_t[kBlockSamples + kPixel];

[[gnu::always_inline]] inline void addRows(const SheetSearchKernels::FrameRows& rows, int begin,
                                           int samples, Columns& sums) {
    for (int i = 0; i < samples; ++i) {
        sums[i] = static_cast<std::uint16_t>(rows[0][begin + i] + rows[1][begin + i] +
                                             rows[2][begin + i] + rows[3][begin + i]);
    }
}

// Adds the next three of the same colour. Only every twelfth sum counts, but gaps vectorize badly.
[[gnu::always_inline]] inline void addNeighbours(const Columns& sums, int samples, Columns& wide) {
    for (int i = 0; i < samples; ++i) {
        wide[i] = static_cast<std::uint16_t>(sums[i] + sums[i + kChannels] +
                                             sums[i + 2 * kChannels] + sums[i + 3 * kChannels]);
    }
}

// A sixteenth of sum; halves round to even.
[[gnu::always_inline]] inline int meanOf(int sum) {
    return (sum + 7 + ((sum >> 4) & 1)) >> 4;
}

[[gnu::always_inline]] inline void reduceBlock(const SheetSearchKernels::FrameRows& rows, int first,
                                               int count, unsigned char* grey) {
    Columns sums, wide;
    addRows(rows, first * kPixel, count * kPixel, sums);
    std::memset(sums + std::ptrdiff_t{kPixel} * count, 0, kPixel * sizeof sums[0]);
    addNeighbours(sums, count * kPixel, wide);
    // Four at a time, since the compiler does not vectorize such strided access.
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

// The last block overlaps the previous one instead of being shorter.
[[gnu::always_inline]] inline void reduceRows(const SheetSearchKernels::FrameRows& rows, int count,
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

// From the farthest pixels inwards, in 256ths, symmetric: OpenCV's Gaussian with an aperture of 21,
// whose outermost weights are zero.
constexpr int kWeights[kBlurReach] = {2, 2, 4, 6, 11, 15, 20, 25, 28};
constexpr int kMiddleWeight = 30;
constexpr int kWeightsShift = 16; // for both directions together

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

// The first done pixels are flat-fielded. Sums pixel by pixel; row by row would not vectorize.
[[gnu::always_inline]] inline void flatFieldBlock(const SheetSearchKernels::SumRows& rows,
                                                  int first, int count, int done,
                                                  unsigned char* grey) {
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
        grey[first + i] = flatFieldedLevel(grey[first + i], background);
    }
}

[[gnu::always_inline]] inline void flatFieldRow(const SheetSearchKernels::SumRows& rows, int count,
                                                unsigned char* grey) {
    if (count < kBlock) {
        flatFieldBlock(rows, 0, count, 0, grey);
        return;
    }
    int first = 0;
    for (; first + kBlock <= count; first += kBlock) {
        flatFieldBlock(rows, first, kBlock, 0, grey);
    }
    if (first < count) {
        flatFieldBlock(rows, count - kBlock, kBlock, first - (count - kBlock), grey);
    }
}

} // namespace

std::vector<SheetSearchKernels> allSheetSearchKernels() {
    return supportedKernels<SheetSearchKernels, Widest::kAvx512, reduceRows, blurRow,
                            flatFieldRow>();
}

} // namespace doccam
