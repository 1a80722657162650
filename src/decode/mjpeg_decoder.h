// Decodes MJPEG frames with libav.
#pragma once

#include "base/frame_size.h"
#include "base/handles/codec_handles.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <memory>
#include <span>

namespace doccam {

// The zero bytes that padded data has behind its end: the codec reads ahead.
inline constexpr std::size_t kCodecPadding = AV_INPUT_BUFFER_PADDING_SIZE;

// One decoder with all it owns. Its fields and their order are fixed.
struct MjpegDecoder {
    void* firstReserved = nullptr;
    CodecContext context;
    const AVCodec* codec = nullptr;
    CodecFrame picture;   // the last decoded picture
    CodecFrame converted; // its planes point into pixels
    CodecScaler scaler;   // made for the first picture and kept
    void* secondReserved = nullptr;
    CodecMemory pixels;

    MjpegDecoder() = default;
    ~MjpegDecoder();
    MjpegDecoder(const MjpegDecoder&) = delete;
    MjpegDecoder& operator=(const MjpegDecoder&) = delete;
};

static_assert(sizeof(MjpegDecoder) == 8 * sizeof(void*));

// A decoder that prints nothing. One that could not be set up fails at every frame.
std::unique_ptr<MjpegDecoder> makeMjpegDecoder();

enum class Decoded { kPicture, kNothing, kError };

// One JPEG of a stream, which may be followed by any left-over bytes.
struct MjpegFrame {
    std::span<const unsigned char> data;
    bool padded = false; // kCodecPadding readable bytes follow, and data need not be copied
    FrameSize wanted;    // what is to be made of it
};

// Decodes a frame into picture. A few hundred bytes may announce gigabytes of pixels: a frame of
// more than four times the wanted pixels, and more than any supported camera sends, is an error. No
// reference to the data outlives the call. Of decoder only the context is used.
Decoded decodePicture(MjpegDecoder& decoder, const MjpegFrame& frame, AVFrame& picture);

// Writes decoder.picture to out: width x height pixels, scaled as the first picture was. False, and
// out is left alone, when out does not hold that many bytes in one piece, or the picture lacks
// pixels that the first one had.
bool convertPicture(MjpegDecoder& decoder, int width, int height, cv::Mat& out);

} // namespace doccam
