// A YUYV frame of any size, in buffers exactly as large as a session's.
#include "base/slack_image.h"
#include "fuzz_target.h"
#include "input.h"
#include "support/yuyv_formula.h"

#include <doccam/doccam.hpp>

#include <algorithm>

namespace {

using namespace doccam;

constexpr int kMaximumSide = 512;
constexpr std::size_t kReadBeyond = 4;

test::Bytes frameOf(std::size_t bytes, std::span<const unsigned char> content) {
    test::Bytes frame(bytes);
    for (std::size_t at = 0; at < bytes && !content.empty(); at += content.size()) {
        std::copy_n(content.begin(), std::min(content.size(), bytes - at),
                    frame.begin() + static_cast<std::ptrdiff_t>(at));
    }
    return frame;
}

// The first pair of pixels is blue first.
void requireColours(const test::Bytes& frame, const cv::Mat& picture) {
    for (std::size_t pixel = 2; pixel < picture.total(); ++pixel) {
        const unsigned char* pair = &frame[pixel / 2 * 4];
        const auto wanted = test::yuyvFormula(pair[pixel % 2 * 2], pair[1], pair[3]);
        test::require(std::ranges::equal(wanted, std::span(picture.data + pixel * 3, 3)));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::Input input(data, size);
    const int width = input.side(kMaximumSide);
    const int height = input.side(kMaximumSide);
    cv::Mat picture = makeSlackImage(height, width);
    test::Bytes frame = frameOf(picture.total() * 2 + kReadBeyond, input.takeRest());
    yuyv_to_rgb888(frame.data(), picture.data, width, height);
    requireColours(frame, picture);
    return 0;
}
