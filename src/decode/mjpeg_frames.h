// Decoding MJPEG frames with the session's decoder.
#pragma once

#include "decode/mjpeg_decoder.h"

#include <opencv2/core/mat.hpp>

#include <atomic>

namespace doccam {

// Owns the decoder; null without one.
using DecoderSlot = std::atomic<MjpegDecoder*>;

// Creates the slot's decoder; does nothing if it exists. Host thread, while no camera streams.
void createDecoder(DecoderSlot& slot);

// Releases the decoder, if there is one. Not while a frame is being decoded.
void releaseDecoder(DecoderSlot& slot);

// Decodes a frame into out, red first. out must hold the wanted pixels continuously; a picture of
// another size is scaled. On failure out is unchanged. Does nothing without a decoder or data.
void decodeInto(const DecoderSlot& slot, const MjpegFrame& frame, cv::Mat& out);

// The first of its two steps: decodes the JPEG. Prints nothing.
Decoded decodeFrame(const DecoderSlot& slot, const MjpegFrame& frame);

// The same into the caller's picture, while storeFrame() may run; and making that picture the one
// that storeFrame() uses.
Decoded decodeFrameInto(const DecoderSlot& slot, AVFrame& picture, const MjpegFrame& frame);
void adoptPicture(const DecoderSlot& slot, AVFrame& picture);

// The second step: writes the decoded picture to out, or prints that decoding failed.
void storeFrame(const DecoderSlot& slot, Decoded decoded, FrameSize wanted, cv::Mat& out);

} // namespace doccam
