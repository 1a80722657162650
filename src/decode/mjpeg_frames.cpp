#include "decode/mjpeg_frames.h"

#include <array>
#include <cstdio>

namespace doccam {
namespace {

// The decoder while the module cannot be opened: no field is set, and every frame is an error.
std::array<void*, 8> emptyRecord{};

MjpegDecoder* noDecoder() {
    return reinterpret_cast<MjpegDecoder*>(emptyRecord.data());
}

const MjpegCodec& codec() {
    return moduleTable<MjpegCodec>(kMjpegModule);
}

MjpegDecoder* makeDecoder() {
    try {
        return codec().makeDecoder();
    } catch (const ModuleError& error) {
        std::fprintf(stderr, "doccam: %s\n", error.what());
        return noDecoder();
    }
}

void release(MjpegDecoder* decoder) {
    if (decoder != nullptr && decoder != noDecoder()) {
        codec().releaseDecoder(decoder);
    }
}

// The decoder of a slot, if it can decode.
MjpegDecoder* decoderIn(const DecoderSlot& slot) {
    MjpegDecoder* const decoder = slot.load(std::memory_order_acquire);
    return decoder != noDecoder() ? decoder : nullptr;
}

} // namespace

MjpegPicture makeMjpegPicture(const DecoderSlot& slot) {
    return decoderIn(slot) != nullptr ? MjpegPicture(codec().makePicture(), codec().releasePicture)
                                      : MjpegPicture(nullptr, [](AVFrame* /*none*/) {});
}

Decoded decodeFrame(const DecoderSlot& slot, const MjpegFrame& frame, AVFrame* picture) {
    MjpegDecoder* const decoder = slot.load(std::memory_order_acquire);
    if (frame.data.empty() || decoder == nullptr) {
        return Decoded::kNothing;
    }
    return decoder != noDecoder() ? codec().decode(*decoder, frame, picture) : Decoded::kError;
}

void adoptPicture(const DecoderSlot& slot, AVFrame& picture) {
    if (MjpegDecoder* const decoder = decoderIn(slot)) {
        codec().adopt(*decoder, picture);
    }
}

void storeFrame(const DecoderSlot& slot, Decoded decoded, FrameSize wanted, cv::Mat& out) {
    if (decoded == Decoded::kError) {
        std::puts("decode error.");
        return;
    }
    MjpegDecoder* const decoder = decoderIn(slot);
    if (decoded == Decoded::kPicture && decoder != nullptr) {
        codec().convert(*decoder, wanted.width, wanted.height, out);
    }
}

void createDecoder(DecoderSlot& slot) {
    if (slot.load(std::memory_order_acquire) != nullptr) {
        return;
    }
    MjpegDecoder* const decoder = makeDecoder();
    MjpegDecoder* none = nullptr;
    if (!slot.compare_exchange_strong(none, decoder, std::memory_order_acq_rel)) {
        release(decoder);
    }
}

void releaseDecoder(DecoderSlot& slot) {
    release(slot.exchange(nullptr, std::memory_order_acq_rel));
}

void decodeInto(const DecoderSlot& slot, const MjpegFrame& frame, cv::Mat& out) {
    storeFrame(slot, decodeFrame(slot, frame), frame.wanted, out);
}

} // namespace doccam
