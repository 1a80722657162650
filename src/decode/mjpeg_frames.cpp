#include "decode/mjpeg_frames.h"

#include <cstdio>
#include <memory>

namespace doccam {

Decoded decodeFrame(const DecoderSlot& slot, const MjpegFrame& frame) {
    MjpegDecoder* const decoder = slot.load(std::memory_order_acquire);
    if (frame.data.empty() || decoder == nullptr) {
        return Decoded::kNothing;
    }
    return decoder->picture ? decodePicture(*decoder, frame, *decoder->picture) : Decoded::kError;
}

Decoded decodeFrameInto(const DecoderSlot& slot, AVFrame& picture, const MjpegFrame& frame) {
    MjpegDecoder* const decoder = slot.load(std::memory_order_acquire);
    return frame.data.empty() || decoder == nullptr ? Decoded::kNothing
                                                    : decodePicture(*decoder, frame, picture);
}

void adoptPicture(const DecoderSlot& slot, AVFrame& picture) {
    MjpegDecoder* const decoder = slot.load(std::memory_order_acquire);
    if (decoder != nullptr && decoder->picture) {
        av_frame_unref(decoder->picture.get());
        av_frame_move_ref(decoder->picture.get(), &picture);
    }
}

void storeFrame(const DecoderSlot& slot, Decoded decoded, FrameSize wanted, cv::Mat& out) {
    MjpegDecoder* const decoder = slot.load(std::memory_order_acquire);
    if (decoded == Decoded::kError) {
        std::puts("decode error.");
    } else if (decoded == Decoded::kPicture && decoder != nullptr && decoder->picture) {
        convertPicture(*decoder, wanted.width, wanted.height, out);
    }
}

void createDecoder(DecoderSlot& slot) {
    if (slot.load(std::memory_order_acquire) != nullptr) {
        return;
    }
    auto decoder = makeMjpegDecoder();
    MjpegDecoder* none = nullptr;
    if (slot.compare_exchange_strong(none, decoder.get(), std::memory_order_acq_rel)) {
        static_cast<void>(decoder.release());
    }
}

void releaseDecoder(DecoderSlot& slot) {
    const std::unique_ptr<MjpegDecoder> last(slot.exchange(nullptr, std::memory_order_acq_rel));
}

void decodeInto(const DecoderSlot& slot, const MjpegFrame& frame, cv::Mat& out) {
    storeFrame(slot, decodeFrame(slot, frame), frame.wanted, out);
}

} // namespace doccam
