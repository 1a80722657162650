// YUYV frames: every colour, and the quirks of channel order and length.
#include "decode/yuyv_to_rgb.h"
#include "jpeg_samples.h"
#include "support/yuyv_formula.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <string>

namespace doccam::test {
namespace {

using testing::ElementsAre;

constexpr int kLargestInt = std::numeric_limits<int>::max();

int wrongPixels(const unsigned char* pixels, int first) {
    int wrong = 0;
    for (int pixel = first; pixel < 1 << 24; ++pixel) {
        const auto expected = yuyvFormula(pixel & 255, pixel >> 16, pixel >> 8 & 255);
        const unsigned char* const got = &pixels[std::size_t{3} * static_cast<unsigned>(pixel)];
        wrong += got[0] != expected[0] || got[1] != expected[1] || got[2] != expected[2] ? 1 : 0;
    }
    return wrong;
}

// Converts a frame followed by the extra pair that the conversion also reads and writes.
Bytes converted(Bytes frame, int width, int height) {
    const auto pairs = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) / 2 + 1;
    frame.resize(pairs * 4, 128);
    Bytes pixels(pairs * 6 + 8, 7);
    yuyv_to_rgb888(frame.data(), pixels.data(), width, height);
    return pixels;
}

// A frame holding each (Y, U, V) once: the bytes of the pixel's index are U, V, Y.
Bytes everyColour() {
    Bytes frame;
    frame.reserve((std::size_t{1} << 25) + 4);
    for (unsigned chroma = 0; chroma < 65536; ++chroma) {
        for (unsigned y = 0; y < 256; y += 2) {
            const auto u = static_cast<unsigned char>(chroma >> 8);
            const auto v = static_cast<unsigned char>(chroma & 255U);
            frame.insert(frame.end(),
                         {static_cast<unsigned char>(y), u, static_cast<unsigned char>(y + 1), v});
        }
    }
    return frame;
}

// The red, green and blue of one pixel.
Bytes colourOf(unsigned char y, unsigned char u, unsigned char v) {
    const Bytes pixels = converted({16, 128, 16, 128, y, u, y, v}, 4, 1);
    return {pixels.begin() + 6, pixels.begin() + 9};
}

TEST(YuyvToRgb, EqualsThePlainFormulaForEveryColour) {
    const Bytes pixels = converted(everyColour(), 4096, 4096);
    EXPECT_EQ(wrongPixels(pixels.data(), 2), 0); // the first pair is blue first
}

TEST(YuyvToRgb, EqualsThePlainFormulaForEveryColourOnEveryInstructionSet) {
    const Bytes frame = everyColour();
    Bytes pixels(std::size_t{3} << 24);
    for (const YuyvKernel& path : allYuyvKernels()) {
        std::fill(pixels.begin(), pixels.end(), 7);
        path.convert(frame.data(), pixels.data(), std::size_t{1} << 23);
        EXPECT_EQ(wrongPixels(pixels.data(), 0), 0) << path.instructionSet;
    }
}

TEST(YuyvToRgb, WritesOnlyTheRequestedPairsOnEveryInstructionSet) {
    const Bytes frame = noise(4 * 200);
    for (const YuyvKernel& path : allYuyvKernels()) {
        for (const std::size_t pairs : {0U, 1U, 2U, 63U, 64U, 65U, 127U, 128U, 200U}) {
            Bytes pixels(6 * 200 + 64, 7);
            path.convert(frame.data(), pixels.data(), pairs);
            Bytes plain(pixels.size(), 7);
            for (std::size_t i = 0; i < pairs; ++i) {
                allYuyvKernels().front().convert(&frame[4 * i], &plain[6 * i], 1);
            }
            EXPECT_EQ(pixels, plain) << path.instructionSet << ", " << pairs;
        }
    }
}

#ifdef __x86_64__
TEST(YuyvToRgb, UsesTheMachinesWidestInstructionSet) {
    const std::string fastest = allYuyvKernels().back().instructionSet;
    const bool wide = __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
                      __builtin_cpu_supports("avx512vl");
    EXPECT_EQ(fastest, wide ? "AVX-512" : __builtin_cpu_supports("avx2") ? "AVX2" : "baseline");
}
#endif

TEST(YuyvToRgb, WidensAFrameWithinOneBuffer) {
    const Bytes frame = noise(4 * 1001);
    Bytes apart(6 * 1001);
    yuyv_to_rgb888(Bytes(frame).data(), apart.data(), 100, 20);
    Bytes within(6 * 1001);
    std::copy(frame.begin(), frame.end(), within.end() - 4 * 1001);
    yuyv_to_rgb888(&within[2 * 1001], within.data(), 100, 20);
    EXPECT_EQ(within, apart);
}

TEST(YuyvToRgb, MapsTheEndsOfTheLumaRangeToBlackAndWhite) {
    const Bytes pixels = converted({16, 128, 235, 128}, 2, 1);
    EXPECT_THAT(Bytes(pixels.begin(), pixels.begin() + 6), ElementsAre(0, 0, 0, 255, 255, 255));
}

TEST(YuyvToRgb, LimitsNegativeValuesToZero) {
    EXPECT_THAT(colourOf(0, 128, 128), ElementsAre(0, 0, 0));
}

TEST(YuyvToRgb, JumpsToFullBrightnessOnlyAbove250) {
    EXPECT_EQ(colourOf(230, 128, 128)[1], 249); // 249.096
    EXPECT_EQ(colourOf(231, 128, 128)[1], 255); // 250.26
    EXPECT_EQ(colourOf(186, 70, 92)[1], 250);   // exactly 250
}

TEST(YuyvToRgb, CutsOffFractions) {
    EXPECT_EQ(colourOf(20, 128, 128)[1], 4); // 4.656
}

TEST(YuyvToRgb, StoresTheFirstPairBlueFirstAndAllOthersRedFirst) {
    const Bytes red = {81, 90, 81, 240, 81, 90, 81, 240, 81, 90, 81, 240};
    const Bytes pixels = converted(red, 2, 2);
    EXPECT_THAT(Bytes(pixels.begin(), pixels.begin() + 12),
                ElementsAre(0, 0, 255, 0, 0, 255, 255, 0, 0, 255, 0, 0));
}

TEST(YuyvToRgb, ConvertsExactlyOnePairPastTheFrame) {
    const Bytes pixels = converted({16, 128, 16, 128, 235, 128, 235, 128}, 2, 1);
    EXPECT_THAT(pixels, ElementsAre(0, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 7, 7, 7, 7, 7,
                                    7, 7, 7));
}

TEST(YuyvToRgb, RoundsAnOddNumberOfPixelsDown) {
    const Bytes white(8, 235);
    const Bytes pixels = converted(white, 3, 1); // one whole pair, and the one past the end
    EXPECT_THAT(Bytes(pixels.begin() + 12, pixels.end()), testing::Each(7));
    EXPECT_NE(pixels[11], 7);
}

TEST(YuyvToRgb, DoesNothingWhenThePixelCountWrapsNegative) {
    unsigned char source[4] = {235, 128, 235, 128};
    unsigned char target[6] = {7, 7, 7, 7, 7, 7};
    yuyv_to_rgb888(source, target, -64, 48);
    yuyv_to_rgb888(source, target, 65536, 32768); // wraps to INT_MIN
    EXPECT_THAT(target, testing::Each(7));
    yuyv_to_rgb888(source, target, kLargestInt,
                   kLargestInt); // wraps to 1: the pair past the frame
    EXPECT_THAT(target, testing::Each(255));
}

} // namespace
} // namespace doccam::test
