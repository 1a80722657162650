#include "decode/yuyv_to_rgb.h"

#include "base/shared_work.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>

namespace doccam {
namespace {

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
    static const YuyvKernel plain = allYuyvKernels().front();
    for (; pairs > 0; --pairs, src += 4, dst += 6) {
        plain.convert(src, dst, 1);
    }
}

} // namespace

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
