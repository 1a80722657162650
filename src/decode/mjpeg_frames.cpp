#include "decode/mjpeg_frames.h"

#include "api/library_state.h"

#include <doccam/doccam.hpp>

#include <cstdio>
#include <memory>

namespace doccam {

namespace {

MjpegDecoder* current() {
    return state().pdecode.load(std::memory_order_acquire);
}

} // namespace

Decoded decodeFrame(const MjpegFrame& frame) {
    MjpegDecoder* const decoder = current();
    if (frame.data.empty() || decoder == nullptr) {
        return Decoded::kNothing;
    }
    return decoder->picture ? decodePicture(*decoder, frame, *decoder->picture) : Decoded::kError;
}

Decoded decodeFrameInto(AVFrame& picture, const MjpegFrame& frame) {
    MjpegDecoder* const decoder = current();
    return frame.data.empty() || decoder == nullptr ? Decoded::kNothing
                                                    : decodePicture(*decoder, frame, picture);
}

void adoptPicture(AVFrame& picture) {
    MjpegDecoder* const decoder = current();
    if (decoder != nullptr && decoder->picture) {
        av_frame_unref(decoder->picture.get());
        av_frame_move_ref(decoder->picture.get(), &picture);
    }
}

void storeFrame(Decoded decoded, int width, int height, cv::Mat& out) {
    switch (decoded) {
    case Decoded::kPicture:
        if (MjpegDecoder* const decoder = current(); decoder != nullptr && decoder->picture) {
            convertPicture(*decoder, width, height, out);
        }
        break;
    case Decoded::kNothing:
        break;
    case Decoded::kError:
        std::puts("decode error.");
        break;
    }
}

} // namespace doccam

void av_decode_init() {
    auto& current = doccam::state().pdecode;
    if (current.load(std::memory_order_acquire) != nullptr) {
        return;
    }
    auto decoder = doccam::makeMjpegDecoder();
    doccam::MjpegDecoder* none = nullptr;
    if (current.compare_exchange_strong(none, decoder.get(), std::memory_order_acq_rel)) {
        static_cast<void>(decoder.release());
    }
}

void av_decode_deinit() {
    const std::unique_ptr<doccam::MjpegDecoder> last(
        doccam::state().pdecode.exchange(nullptr, std::memory_order_acq_rel));
}

void do_excute_image(unsigned char* data, int length, int width, int height, cv::Mat& out,
                     cv::Mat& /*spare*/) {
    if (data == nullptr || length < 1) {
        return;
    }
    const doccam::Decoded decoded = doccam::decodeFrame(
        {.data = {data, static_cast<std::size_t>(length)}, .wanted = {width, height}});
    doccam::storeFrame(decoded, width, height, out);
}
