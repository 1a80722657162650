// The colour formula over many pixels, as loops that the compiler vectorizes for each instruction
// set.
#include "base/dispatch.h"
#include "decode/yuyv_to_rgb.h"

#include <algorithm>
#include <cstdint>

namespace doccam {
namespace {

// In integer thousandths: red = 1.164 (y - 16) + 1.596 (v - 128), and so on. Equal to the formula
// in single precision: a sum that is not a whole number is at least a thousandth away from one, far
// more than the rounding error.
[[gnu::always_inline]] inline int luma(int y) {
    return 1164 * (y - 16);
}

[[gnu::always_inline]] inline int redness(int v) {
    return 1596 * (v - 128);
}

[[gnu::always_inline]] inline int greenness(int u, int v) {
    return -813 * (v - 128) - 394 * (u - 128);
}

[[gnu::always_inline]] inline int blueness(int u) {
    return 2018 * (u - 128);
}

constexpr int kKnee = 250 * 1000;

// Divides by 1000 in two steps, the second in 16 bits, which vectorizes better.
[[gnu::always_inline]] inline unsigned char toByte(int thousandths) {
    const int limited = std::clamp(thousandths, 0, kKnee);
    const auto eighths = static_cast<std::uint16_t>(limited / 8);
    const auto whole = static_cast<unsigned char>(eighths / 125);
    return thousandths > kKnee ? 255 : whole;
}

constexpr std::size_t kBlock = 64; // pixel pairs

struct Block {
    alignas(64) unsigned char red[2 * kBlock], green[2 * kBlock], blue[2 * kBlock];
};

[[gnu::always_inline]] inline void convertBlock(const unsigned char* src, std::size_t count,
                                                Block& block) {
    for (std::size_t i = 0; i < count; ++i) {
        const int left = luma(src[4 * i]);
        const int right = luma(src[4 * i + 2]);
        const int u = src[4 * i + 1];
        const int v = src[4 * i + 3];
        block.red[2 * i] = toByte(left + redness(v));
        block.red[2 * i + 1] = toByte(right + redness(v));
        block.green[2 * i] = toByte(left + greenness(u, v));
        block.green[2 * i + 1] = toByte(right + greenness(u, v));
        block.blue[2 * i] = toByte(left + blueness(u));
        block.blue[2 * i + 1] = toByte(right + blueness(u));
    }
}

[[gnu::always_inline]] inline void storeBlock(const Block& block, std::size_t count,
                                              unsigned char* dst) {
    for (std::size_t i = 0; i < 2 * count; ++i) {
        dst[3 * i] = block.red[i];
        dst[3 * i + 1] = block.green[i];
        dst[3 * i + 2] = block.blue[i];
    }
}

[[gnu::always_inline]] inline void convertPairs(const unsigned char* src, unsigned char* dst,
                                                std::size_t count) {
    Block block;
    for (; count >= kBlock; count -= kBlock, src += 4 * kBlock, dst += 6 * kBlock) {
        convertBlock(src, kBlock, block);
        storeBlock(block, kBlock, dst);
    }
    convertBlock(src, count, block);
    storeBlock(block, count, dst);
}

void convertPlainly(const unsigned char* src, unsigned char* dst, std::size_t count) {
    convertPairs(src, dst, count);
}

constexpr YuyvKernel kBaseline = {InstructionSet::kBaseline, convertPlainly};

#ifdef __x86_64__

[[gnu::target("avx2")]] void convertWithAvx2(const unsigned char* src, unsigned char* dst,
                                             std::size_t count) {
    convertPairs(src, dst, count);
}

[[DOCCAM_TARGET_AVX512]] void convertWithAvx512(const unsigned char* src, unsigned char* dst,
                                                std::size_t count) {
    convertPairs(src, dst, count);
}

constexpr YuyvKernel kAvx2 = {InstructionSet::kAvx2, convertWithAvx2};
constexpr YuyvKernel kAvx512 = {InstructionSet::kAvx512, convertWithAvx512};

#endif

} // namespace

std::vector<YuyvKernel> allYuyvKernels() {
#ifdef __x86_64__
    return supportedKernels({kBaseline, kAvx2, kAvx512});
#else
    return {kBaseline};
#endif
}

} // namespace doccam
