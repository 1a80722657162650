// What the library asks of the module that decodes MJPEG frames with libav.
#pragma once

#include "base/frame_size.h"
#include "base/modules/module.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <span>

struct AVFrame;

namespace doccam {

struct MjpegDecoder;

// The number of zero bytes after padded data: libavcodec reads past the end.
inline constexpr std::size_t kCodecPadding = 64;

enum class Decoded { kPicture, kNothing, kError };

// One JPEG of a stream, which may be followed by leftover bytes.
struct MjpegFrame {
    std::span<const unsigned char> data;
    bool padded = false; // kCodecPadding readable bytes follow, so data need not be copied
    FrameSize wanted;    // the size to decode to
};

// The module's table.
struct MjpegCodec {
    ModuleHead head;

    // A decoder and a picture, and their ends. Null if out of memory.
    MjpegDecoder* (*makeDecoder)();
    void (*releaseDecoder)(MjpegDecoder* decoder);
    AVFrame* (*makePicture)();
    void (*releasePicture)(AVFrame* picture);

    // Decodes frame into picture, or into the decoder's own for null.
    Decoded (*decode)(MjpegDecoder& decoder, const MjpegFrame& frame, AVFrame* picture);

    // Makes picture the decoder's own.
    void (*adopt)(MjpegDecoder& decoder, AVFrame& picture);

    // Writes the decoder's picture to out, scaled to width x height.
    bool (*convert)(MjpegDecoder& decoder, int width, int height, cv::Mat& out);
};

} // namespace doccam
