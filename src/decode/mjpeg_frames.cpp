#include "decode/mjpeg_frames.h"

#include "state/library_state.h"

#include <cstdio>
#include <memory>

namespace doccam {

namespace {

MjpegDecoder* current() {
    return state().session.pdecode.load(std::memory_order_acquire);
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

void createDecoder() {
    auto& slot = state().session.pdecode;
    if (slot.load(std::memory_order_acquire) != nullptr) {
        return;
    }
    auto decoder = makeMjpegDecoder();
    MjpegDecoder* none = nullptr;
    if (slot.compare_exchange_strong(none, decoder.get(), std::memory_order_acq_rel)) {
        static_cast<void>(decoder.release());
    }
}

void releaseDecoder() {
    const std::unique_ptr<MjpegDecoder> last(
        state().session.pdecode.exchange(nullptr, std::memory_order_acq_rel));
}

void decodeInto(const MjpegFrame& frame, cv::Mat& out) {
    storeFrame(decodeFrame(frame), frame.wanted.width, frame.wanted.height, out);
}

} // namespace doccam
