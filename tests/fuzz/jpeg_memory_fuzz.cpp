// Decoding a JPEG in memory into a picture of any size.
#include "fuzz_target.h"
#include "input.h"

#include <doccam/doccam.hpp>

namespace {

constexpr int kMaximumSide = 256;

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace doccam::test;
    Input input(data, size);
    const int width = input.side(kMaximumSide);
    const int height = input.side(kMaximumSide);
    cv::Mat picture(height, width, CV_8UC3);
    Bytes jpeg = exactCopy(input.takeRest());
    VideoBuf frame{jpeg.data(), static_cast<std::int32_t>(jpeg.size())};
    const int code = Mjpeg2RgbConvertEx(frame.start, frame.length, picture);
    require(code == 0 || code == -1);
    const int finished = Mjpeg2RgbConvert(&frame, picture);
    require(finished == code || finished == -1);
    return 0;
}
