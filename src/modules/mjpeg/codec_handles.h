// Owning handles for libavcodec and libswscale objects, each one pointer in size.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswscale/swscale.h>
}

#include <cstdint>
#include <memory>

namespace doccam {

struct CodecRelease {
    // Closes the codec, too.
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }

    void operator()(AVFrame* frame) const { av_frame_free(&frame); }

    void operator()(AVPacket* packet) const { av_packet_free(&packet); }

    void operator()(AVBufferRef* reference) const { av_buffer_unref(&reference); }

    void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }

    void operator()(std::uint8_t* memory) const { av_free(memory); }
};

using CodecContext = std::unique_ptr<AVCodecContext, CodecRelease>;
using CodecFrame = std::unique_ptr<AVFrame, CodecRelease>;
using CodecPacket = std::unique_ptr<AVPacket, CodecRelease>;
using CodecBuffer = std::unique_ptr<AVBufferRef, CodecRelease>;
using CodecScaler = std::unique_ptr<SwsContext, CodecRelease>;
using CodecMemory = std::unique_ptr<std::uint8_t, CodecRelease>;

} // namespace doccam
