// Loops that the compiler vectorizes.
#include "docimage/clean/page_kernels.h"

#include "base/dispatch.h"
#include "base/pixel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace doccam {
namespace {

// Colours are split into planes a block at a time, and interleaved again.
constexpr int kBlock = 64;

using Channel = unsigned char[kBlock];

struct Colours {
    alignas(kBlock) Channel blue, green, red;
};

[[gnu::always_inline]] inline void separate(const unsigned char* pixels, int count,
                                            Colours& colours) {
    for (int i = 0; i < count; ++i) {
        // NOLINTNEXTLINE(clang-analyzer-core.uninitialized.Assign): count pixels are set
        colours.blue[i] = pixels[kPixelBytes * i];
        colours.green[i] = pixels[kPixelBytes * i + 1];
        colours.red[i] = pixels[kPixelBytes * i + 2];
    }
}

[[gnu::always_inline]] inline void join(const Colours& colours, int count, unsigned char* pixels) {
    for (int i = 0; i < count; ++i) {
        pixels[kPixelBytes * i] = colours.blue[i];
        pixels[kPixelBytes * i + 1] = colours.green[i];
        pixels[kPixelBytes * i + 2] = colours.red[i];
    }
}

// Grey samples lie within 30 of their mean, rounded down; comparing their sum avoids a division.
[[gnu::always_inline]] inline bool isColoured(std::int16_t c0, std::int16_t c1, std::int16_t c2) {
    constexpr std::int16_t kGreyest = 30;
    const auto sum = static_cast<std::int16_t>(c0 + c1 + c2);
    const std::int16_t most = std::max(std::max(c0, c1), c2);
    const std::int16_t least = std::min(std::min(c0, c1), c2);
    return sum < static_cast<std::int16_t>(3 * (most - kGreyest)) ||
           sum >= static_cast<std::int16_t>(3 * (least + kGreyest + 1));
}

[[gnu::always_inline]] inline void markBlock(const Colours& colours, int count,
                                             unsigned char* marks) {
    for (int i = 0; i < count; ++i) {
        marks[i] = isColoured(colours.blue[i], colours.green[i], colours.red[i]) ? kWhite : 0;
    }
}

[[gnu::always_inline]] inline void markColoursOf(const unsigned char* pixels, int count,
                                                 unsigned char* marks) {
    Colours colours;
    for (; count >= kBlock; count -= kBlock, pixels += kPixelBytes * kBlock, marks += kBlock) {
        separate(pixels, kBlock, colours);
        markBlock(colours, kBlock, marks);
    }
    separate(pixels, count, colours);
    markBlock(colours, count, marks);
}

// The mean of a dark pixel's samples, rounded down, is at most 30.
[[gnu::always_inline]] inline void markDarkOf(const unsigned char* pixels, int count,
                                              unsigned char* marks) {
    constexpr int kBrightSum = 93;
    for (int i = 0; i < count; ++i, pixels += kChannels) {
        const auto sum = static_cast<std::int16_t>(pixels[0] + pixels[1] + pixels[2]);
        marks[i] = sum < kBrightSum ? kWhite : 0;
    }
}

// Brighter than the mean less 19. Of an odd number of pixels, no mean is halfway between levels.
[[gnu::always_inline]] inline void markPaperOf(const unsigned char* grey, const std::uint32_t* sums,
                                               int count, unsigned char* paper) {
    constexpr int kPixels = kSurroundings * kSurroundings;
    constexpr int kLessThanMean = 19;
    for (int i = 0; i < count; ++i) {
        const auto sum = static_cast<int>(sums[i + kSurroundings] - sums[i]);
        const int limit = kPixels * (2 * (grey[i] + kLessThanMean) - 1);
        paper[i] = 2 * sum < limit ? kWhite : 0;
    }
}

// Sharpens vertically and brightens by half: five times the sample, less twice the one above and
// one and a half times the one below. Halves round to even.
[[gnu::always_inline]] inline unsigned char sharpened(int above, int sample, int below) {
    const auto doubled = static_cast<std::int16_t>(10 * sample - 4 * above - 3 * below);
    const auto down = static_cast<std::int16_t>(doubled >> 1);
    const auto nearest = static_cast<std::int16_t>(down + (doubled & down & 1));
    return static_cast<unsigned char>(
        std::clamp<std::int16_t>(nearest, 0, static_cast<std::int16_t>(kWhite)));
}

[[gnu::always_inline]] inline unsigned char lowered(unsigned char sample, int amount) {
    return static_cast<unsigned char>(std::max<int>(sample, amount) - amount);
}

[[gnu::always_inline]] inline unsigned char raised(unsigned char sample, int amount) {
    return static_cast<unsigned char>(std::min<int>(sample, kWhite - amount) + amount);
}

// Makes clearly red pixels redder. Amounts of 0 replace branches, which would not vectorize.
[[gnu::always_inline]] inline void emphasise(Colours& colours, int count) {
    constexpr int kClearlyRed = 81;
    constexpr int kLowered = 40;
    constexpr int kRaised = 80;
    for (int i = 0; i < count; ++i) {
        const int lead = colours.red[i] - std::min(colours.blue[i], colours.green[i]);
        const int isRed = lead >= kClearlyRed ? -1 : 0;
        colours.blue[i] = lowered(colours.blue[i], kLowered & isRed);
        colours.green[i] = lowered(colours.green[i], kLowered & isRed);
        colours.red[i] = raised(colours.red[i], kRaised & isRed);
    }
}

// Grey print outside the margins keeps its samples.
[[gnu::always_inline]] inline void choose(const WhitenRowInput& row, int first, int count,
                                          const Channel& coloured, const Channel& colour,
                                          Channel& sample) {
    const unsigned char* const margin = row.margin + first;
    const unsigned char* const paper = row.paper + first;
    for (int i = 0; i < count; ++i) {
        const int ifGrey = sample[i] | paper[i];
        const int either = (colour[i] & coloured[i]) | (ifGrey & ~coloured[i]);
        sample[i] = static_cast<unsigned char>(either | margin[i]);
    }
}

[[gnu::always_inline]] inline void whitenBlock(const WhitenRowInput& row, int first, int count,
                                               unsigned char* result) {
    const std::ptrdiff_t begin = kPixelBytes * first;
    alignas(kBlock) unsigned char sharp[kChannels * kBlock];
    for (int i = 0; i < kPixelBytes * count; ++i) {
        sharp[i] = sharpened(row.above[begin + i], row.row[begin + i], row.below[begin + i]);
    }
    Colours colours;
    Colours samples;
    alignas(kBlock) Channel coloured;
    separate(sharp, count, colours);
    separate(row.row + begin, count, samples);
    markBlock(colours, count, coloured);
    emphasise(colours, count);
    choose(row, first, count, coloured, colours.blue, samples.blue);
    choose(row, first, count, coloured, colours.green, samples.green);
    choose(row, first, count, coloured, colours.red, samples.red);
    join(samples, count, result + begin);
}

[[gnu::always_inline]] inline void whitenPaperOf(const WhitenRowInput& row, unsigned char* result) {
    int first = 0;
    for (; first + kBlock <= row.count; first += kBlock) {
        whitenBlock(row, first, kBlock, result);
    }
    whitenBlock(row, first, row.count - first, result);
}

} // namespace

std::vector<PageKernels> allPageKernels() {
    return supportedKernels<PageKernels, Widest::kAvx512, markColoursOf, markDarkOf, markPaperOf,
                            whitenPaperOf>();
}

} // namespace doccam
