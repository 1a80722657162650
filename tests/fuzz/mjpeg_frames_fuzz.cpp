// Frames of an MJPEG stream, one after another through one decoder.
#include "decode/mjpeg_frames.h"
#include "fuzz_target.h"
#include "input.h"
#include "modules/mjpeg/libav_decoder.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

namespace {

using namespace doccam;

constexpr int kMaximumSide = 256;
constexpr std::int64_t kMaximumPixels = 1 << 18;

// Decoding time grows with the size that a frame's header announces.
void limitPictures() {
    MjpegDecoder& decoder = *state().session.pdecode;
    decoder.context->max_pixels = kMaximumPixels;
}

// The loop pads its frames; do_excute_image takes unpadded ones.
void decode(std::span<const unsigned char> frame, bool padded, cv::Mat& picture) {
    test::Bytes data = test::exactCopy(frame);
    if (padded) {
        data.resize(frame.size() + kCodecPadding);
        decodeInto(state().session.pdecode,
                   {{data.data(), frame.size()}, true, {picture.cols, picture.rows}}, picture);
        return;
    }
    cv::Mat spare;
    do_excute_image(data.data(), static_cast<int>(data.size()), picture.cols, picture.rows, picture,
                    spare);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::Input input(data, size);
    const int width = input.side(kMaximumSide);
    const int height = input.side(kMaximumSide);
    cv::Mat picture(height, width, CV_8UC3);
    av_decode_init();
    limitPictures();
    while (!input.empty()) {
        const bool padded = input.byte() % 2 == 1;
        const std::size_t length = input.word();
        decode(input.take(length), padded, picture);
    }
    av_decode_deinit();
    return 0;
}
