// Loops that the compiler vectorizes, except for the gathering of pixels.
#include "docimage/turn/rotation_kernels.h"

#include "base/dispatch.h"
#include "base/pixel.h"

#include <cstdint>
#include <cstring>

namespace doccam {
namespace {

constexpr int kBlock = 64;

// The four pixels around each position of a block, with their samples in the lower three bytes.
struct Neighbours {
    std::uint32_t upperLeft[kBlock], upperRight[kBlock], lowerLeft[kBlock], lowerRight[kBlock];
};

[[gnu::always_inline]] inline std::uint32_t pixelAt(const unsigned char* pixel) {
    std::uint32_t samples = 0;
    std::memcpy(&samples, pixel, sizeof samples);
    return samples;
}

struct Places {
    int across[kBlock], down[kBlock];
};

[[gnu::always_inline]] inline void findPlaces(const RotationRow& row, int first, int count,
                                              Places& places) {
    const int* const acrossFrom = row.acrossFrom + first;
    const int* const downFrom = row.downFrom + first;
    for (int i = 0; i < count; ++i) {
        places.across[i] = row.across + acrossFrom[i];
        places.down[i] = row.down + downFrom[i];
    }
}

[[gnu::always_inline]] inline void fetch(const RotationRow& row, const Places& places, int count,
                                         Neighbours& pixels) {
    int offsets[kBlock];
    for (int i = 0; i < count; ++i) {
        const int x = places.across[i] >> kPlaceShift;
        const int y = places.down[i] >> kPlaceShift;
        offsets[i] = y * row.step + x * kChannels;
    }
    for (int i = 0; i < count; ++i) {
        const unsigned char* const upper = row.source + offsets[i];
        const unsigned char* const lower = upper + row.step;
        pixels.upperLeft[i] = pixelAt(upper);
        pixels.upperRight[i] = pixelAt(upper + kChannels);
        pixels.lowerLeft[i] = pixelAt(lower);
        pixels.lowerRight[i] = pixelAt(lower + kChannels);
    }
}

using Samples = unsigned char[kBlock];
using Lanes = std::int16_t[kBlock];

// The distances of a block's positions from the pixels to their upper left.
struct Fractions {
    Lanes right, below;
};

[[gnu::always_inline]] inline void findFractions(const Places& places, int count,
                                                 Fractions& fractions) {
    for (int i = 0; i < count; ++i) {
        fractions.right[i] = fractionOf(places.across[i]);
        fractions.below[i] = fractionOf(places.down[i]);
    }
}

[[gnu::always_inline]] inline void pick(const std::uint32_t* pixels, int count, int shift,
                                        Lanes& samples) {
    for (int i = 0; i < count; ++i) {
        samples[i] = static_cast<std::int16_t>((pixels[i] >> shift) & 0xFF);
    }
}

[[gnu::always_inline]] inline void blendSamples(const Fractions& fractions,
                                                const Neighbours& pixels, int count, int shift,
                                                Samples& samples) {
    Lanes upperLeft, upperRight, lowerLeft, lowerRight;
    pick(pixels.upperLeft, count, shift, upperLeft);
    pick(pixels.upperRight, count, shift, upperRight);
    pick(pixels.lowerLeft, count, shift, lowerLeft);
    pick(pixels.lowerRight, count, shift, lowerRight);
    for (int i = 0; i < count; ++i) {
        const std::int16_t right = fractions.right[i];
        samples[i] = blendDown(blendAlong(upperLeft[i], upperRight[i], right),
                               blendAlong(lowerLeft[i], lowerRight[i], right), fractions.below[i]);
    }
}

[[gnu::always_inline]] inline void join(const Samples& first, const Samples& second,
                                        const Samples& third, int count, unsigned char* target) {
    for (int i = 0; i < count; ++i) {
        target[std::ptrdiff_t{kChannels} * i] = first[i];
        target[std::ptrdiff_t{kChannels} * i + 1] = second[i];
        target[std::ptrdiff_t{kChannels} * i + 2] = third[i];
    }
}

[[gnu::always_inline]] inline void blendBlock(const RotationRow& row, int first, int count,
                                              SampleOrder order, unsigned char* target) {
    Places places;
    Neighbours pixels;
    Samples samples[kChannels];
    findPlaces(row, first, count, places);
    fetch(row, places, count, pixels);
    Fractions fractions;
    findFractions(places, count, fractions);
    blendSamples(fractions, pixels, count, 0, samples[0]);
    blendSamples(fractions, pixels, count, 8, samples[1]);
    blendSamples(fractions, pixels, count, 16, samples[2]);
    const bool kept = order == SampleOrder::kKept;
    join(samples[kept ? 0 : 2], samples[1], samples[kept ? 2 : 0], count,
         target + std::ptrdiff_t{kChannels} * first);
}

[[gnu::always_inline]] inline void blendRow(const RotationRow& row, SampleOrder order,
                                            unsigned char* target) {
    int first = 0;
    for (; first + kBlock <= row.count; first += kBlock) {
        blendBlock(row, first, kBlock, order, target);
    }
    blendBlock(row, first, row.count - first, order, target);
}

} // namespace

std::vector<RotationKernels> allRotationKernels() {
    return supportedKernels<RotationKernels, Widest::kAvx2, blendRow>();
}

} // namespace doccam
