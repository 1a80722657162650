#include "decode/yuyv_to_rgb.h"

#include "base/shared_work.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>

namespace doccam {
namespace {

// In integer thousandths: red = 1.164 (y - 16) + 1.596 (v - 128), and so on. Equal to the formula
// in single precision, whose rounding error is far below a thousandth.
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

constexpr std::size_t kStripe = 65536; // pixel pairs per piece of work

// A frame's pixel count is 32-bit, and wraps around for a nonsense size.
std::int32_t pixelCount(int width, int height) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(width) *
                                     static_cast<std::uint32_t>(height));
}

bool overlap(const unsigned char* src, const unsigned char* dst, std::size_t pairs) {
    const std::less<> before;
    return before(src, dst + 6 * pairs) && before(dst, src + 4 * pairs);
}

void convertApart(const unsigned char* src, unsigned char* dst, std::size_t pairs) {
    const YuyvKernel& fastest = widestKernels<allYuyvKernels>();
    const auto stripes = static_cast<int>((pairs + kStripe - 1) / kStripe);
    shareWork(stripes, [&](const cv::Range& range) {
        const std::size_t first = kStripe * static_cast<std::size_t>(range.start);
        const std::size_t last = std::min(kStripe * static_cast<std::size_t>(range.end), pairs);
        fastest.convert(src + 4 * first, dst + 6 * first, last - first);
    });
}

void convertOneByOne(const unsigned char* src, unsigned char* dst, std::size_t pairs) {
    for (; pairs > 0; --pairs, src += 4, dst += 6) {
        convertPairs(src, dst, 1);
    }
}

} // namespace

std::vector<YuyvKernel> allYuyvKernels() {
    return supportedKernels<YuyvKernel, Widest::kAvx512, convertPairs>();
}

void convertYuyv(const unsigned char* src, unsigned char* dst, int width, int height) {
    const std::int32_t inFrame = pixelCount(width, height) / 2;
    if (inFrame < 0) {
        return;
    }
    // Only the first pair is blue first. One pair past the frame is converted.
    const auto others = static_cast<std::size_t>(inFrame);
    convertOneByOne(src, dst, 1);
    std::swap(dst[0], dst[2]);
    std::swap(dst[3], dst[5]);
    // A host may expand a frame within one buffer, from its end.
    const auto convert = overlap(src, dst, others + 1) ? convertOneByOne : convertApart;
    convert(src + 4, dst + 6, others);
}

} // namespace doccam
