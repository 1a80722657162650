// Decodes MJPEG frames with libav.
#pragma once

#include "decode/mjpeg_codec.h"
#include "modules/mjpeg/codec_handles.h"

#include <memory>

namespace doccam {

// One decoder and all it owns. Its fields and their order are fixed.
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

// Creates a decoder that prints nothing. If its setup failed, decoding fails for every frame.
std::unique_ptr<MjpegDecoder> makeMjpegDecoder();

// Decodes a frame into picture. Since a few hundred bytes may announce gigabytes of pixels, a frame
// of more than four times the wanted pixels and more than any supported camera sends is an error.
// No reference to the data outlives the call. Uses only decoder's context.
Decoded decodePicture(MjpegDecoder& decoder, const MjpegFrame& frame, AVFrame& picture);

// Writes decoder.picture to out: width x height pixels, scaled like the first picture. Returns
// false, leaving out unchanged, if out does not hold that many bytes continuously, or the picture
// lacks pixels that the first one had.
bool convertPicture(MjpegDecoder& decoder, int width, int height, cv::Mat& out);

} // namespace doccam
