// MJPEG frames through the process-wide decoder.
#pragma once

#include "decode/mjpeg_decoder.h"

#include <opencv2/core/mat.hpp>

#include <atomic>

namespace doccam {

// Null without a decoder, whose owner it is.
using DecoderSlot = std::atomic<MjpegDecoder*>;

// Creates the slot's decoder; does nothing if it exists. Host thread, not streaming.
void createDecoder(DecoderSlot& slot);

// Releases it; does nothing without one. Not while a frame is being decoded.
void releaseDecoder(DecoderSlot& slot);

// Decodes a frame into out, which holds the wanted pixels in one piece, red first; a picture of
// another size is scaled. On failure out keeps its content. Without a decoder, or data, nothing is
// done.
void decodeInto(const DecoderSlot& slot, const MjpegFrame& frame, cv::Mat& out);

// Its two steps. First decodes the JPEG. Prints nothing.
Decoded decodeFrame(const DecoderSlot& slot, const MjpegFrame& frame);

// The same into a picture of the caller's, beside which storeFrame() may run; and that picture made
// the one that storeFrame() takes.
Decoded decodeFrameInto(const DecoderSlot& slot, AVFrame& picture, const MjpegFrame& frame);
void adoptPicture(const DecoderSlot& slot, AVFrame& picture);

// Then writes what has been decoded to out, or prints that nothing could be.
void storeFrame(const DecoderSlot& slot, Decoded decoded, FrameSize wanted, cv::Mat& out);

} // namespace doccam
