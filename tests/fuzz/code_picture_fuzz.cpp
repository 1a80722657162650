// A code in a small grey picture, made binary in every way.
#include "fuzz_target.h"
#include "input.h"

#include <doccam/doccam.hpp>

#include <algorithm>

namespace {

constexpr int kMostWidth = 256;
constexpr std::size_t kMostPixels = 1 << 14;

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace doccam::test;
    Input input(data, size);
    const int mode = static_cast<int>(input.byte() % 2);
    const int width = input.side(kMostWidth);
    Bytes pixels = exactCopy(input.take(kMostPixels));
    const int height = static_cast<int>(pixels.size()) / width;
    const cv::Mat pictureView(height, width, CV_8UC1, pixels.data());
    allowImageErrors([&] { GetQR(pictureView, mode); });
    return 0;
}
