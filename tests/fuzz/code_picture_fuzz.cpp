// Reading a code from a small grey picture with every binarization.
#include "fuzz_target.h"
#include "input.h"

#include <doccam/doccam.hpp>

#include <algorithm>

namespace {

constexpr int kMaximumWidth = 256;
constexpr std::size_t kMaximumPixels = 1 << 14;

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace doccam::test;
    Input input(data, size);
    const int mode = static_cast<int>(input.byte() % 2);
    const int width = input.side(kMaximumWidth);
    Bytes pixels = exactCopy(input.take(kMaximumPixels));
    const int height = static_cast<int>(pixels.size()) / width;
    const cv::Mat pictureView(height, width, CV_8UC1, pixels.data());
    allowImageErrors([&] { GetQR(pictureView, mode); });
    return 0;
}
