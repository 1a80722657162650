// The neighbours of a run's pixels are collected while the compiler's vectors blend those of the
// run before: what has just been stored in small pieces is slow to load as a whole.
#include "page/warp_kernels.h"

#include <cstring>

namespace doccam::page {

namespace {

// Room for one sample more than a colour has, so that whole words are copied.
template <int kChannels>
inline constexpr int kLanes = kChannels == 1 ? 1 : 4;

template <int kChannels>
struct Neighbours {
    static constexpr int kCount = kWarpRun * kLanes<kChannels>;
    alignas(64) unsigned char topLeft[kCount];
    alignas(64) unsigned char topRight[kCount];
    alignas(64) unsigned char bottomLeft[kCount];
    alignas(64) unsigned char bottomRight[kCount];
    WarpPlace start;
    WarpPlace step;
};

template <int kChannels>
[[gnu::always_inline]] inline void collect(const WarpRuns& runs, int number,
                                           Neighbours<kChannels>& found) {
    constexpr int kSamples = kLanes<kChannels>;
    const WarpPlace start = runs.places[number];
    const WarpPlace step = stepBetween(start, runs.places[number + 1]);
    WarpPlace place = start;
    for (int i = 0; i < kWarpRun; ++i, place.x += step.x, place.y += step.y) {
        const unsigned char* const top = runs.picture + (place.y >> kPlaceBits) * runs.stride +
                                         (place.x >> kPlaceBits) * kChannels;
        const unsigned char* const bottom = top + runs.stride;
        std::memcpy(found.topLeft + i * kSamples, top, kSamples);
        std::memcpy(found.topRight + i * kSamples, top + kChannels, kSamples);
        std::memcpy(found.bottomLeft + i * kSamples, bottom, kSamples);
        std::memcpy(found.bottomRight + i * kSamples, bottom + kChannels, kSamples);
    }
    found.start = start;
    found.step = step;
}

// The weight of each sample; only the lowest bits of places count.
template <int kSamples>
[[gnu::always_inline]] inline void setWeights(std::int64_t start, std::int64_t step,
                                              std::uint16_t* __restrict weights) {
    const auto first = static_cast<std::uint32_t>(start);
    const auto each = static_cast<std::uint32_t>(step);
    for (int i = 0; i < kWarpRun * kSamples; ++i) {
        const std::uint32_t place = first + static_cast<std::uint32_t>(i / kSamples) * each;
        weights[i] = static_cast<std::uint16_t>((place >> (kPlaceBits - kWeightBits)) &
                                                ((1U << kWeightBits) - 1));
    }
}

template <int kChannels>
[[gnu::always_inline]] inline void blendRun(const Neighbours<kChannels>& found, unsigned char* to) {
    constexpr int kSamples = kLanes<kChannels>;
    alignas(64) std::uint16_t right[Neighbours<kChannels>::kCount];
    alignas(64) std::uint16_t down[Neighbours<kChannels>::kCount];
    setWeights<kSamples>(found.start.x, found.step.x, right);
    setWeights<kSamples>(found.start.y, found.step.y, down);
    alignas(64) unsigned char samples[Neighbours<kChannels>::kCount];
    for (int i = 0; i < Neighbours<kChannels>::kCount; ++i) {
        samples[i] = blended(found.topLeft[i], found.topRight[i], found.bottomLeft[i],
                             found.bottomRight[i], right[i], down[i]);
    }
    // The sample too many is overwritten by the next pixel.
    const unsigned char* pixel = samples;
    for (int i = 0; i + 1 < kWarpRun; ++i, to += kChannels, pixel += kSamples) {
        std::memcpy(to, pixel, kSamples);
    }
    std::memcpy(to, pixel, kChannels);
}

template <int kChannels>
[[gnu::always_inline]] inline void blendRuns(const WarpRuns& runs, unsigned char* to) {
    Neighbours<kChannels> found[2];
    collect<kChannels>(runs, 0, found[0]);
    constexpr std::ptrdiff_t kSize = std::ptrdiff_t{kWarpRun} * kChannels;
    for (int number = 1; number < runs.count; ++number, to += kSize) {
        collect<kChannels>(runs, number, found[number % 2]);
        blendRun<kChannels>(found[(number + 1) % 2], to);
    }
    blendRun<kChannels>(found[(runs.count + 1) % 2], to);
}

} // namespace

std::vector<WarpKernels> allWarpKernels() {
    return supportedKernels<WarpKernels, Widest::kAvx512, blendRuns<3>, blendRuns<1>>();
}

} // namespace doccam::page
