#include "picture/yuyv.h"

namespace doccam::virtualcam {

namespace {

// BT.601 weights times 65536; chroma is summed over a pair of pixels, hence 17 bits.
constexpr int kHalf = 1 << 15;

std::uint8_t luma(int blue, int green, int red) {
    return static_cast<std::uint8_t>(((16829 * red + 33039 * green + 6416 * blue + kHalf) >> 16) +
                                     16);
}

void encodePair(const std::uint8_t* bgr, std::uint8_t* out) {
    const int blue = bgr[0] + bgr[3];
    const int green = bgr[1] + bgr[4];
    const int red = bgr[2] + bgr[5];
    out[0] = luma(bgr[0], bgr[1], bgr[2]);
    out[1] = static_cast<std::uint8_t>(
        ((-9714 * red - 19070 * green + 28784 * blue + 2 * kHalf) >> 17) + 128);
    out[2] = luma(bgr[3], bgr[4], bgr[5]);
    out[3] = static_cast<std::uint8_t>(
        ((28784 * red - 24103 * green - 4681 * blue + 2 * kHalf) >> 17) + 128);
}

} // namespace

std::vector<std::uint8_t> encodeYuyv(const cv::Mat& picture) {
    const auto pairs = static_cast<std::size_t>(picture.cols / 2);
    std::vector<std::uint8_t> out(pairs * 4 * static_cast<std::size_t>(picture.rows));
    std::uint8_t* target = out.data();
    for (int y = 0; y < picture.rows; ++y) {
        const std::uint8_t* source = picture.ptr(y);
        for (std::size_t pair = 0; pair < pairs; ++pair) {
            encodePair(source + 6 * pair, target);
            target += 4;
        }
    }
    return out;
}

} // namespace doccam::virtualcam
