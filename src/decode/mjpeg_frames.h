// Decoding MJPEG frames with the session's decoder.
#pragma once

#include "decode/mjpeg_codec.h"

#include <opencv2/core/mat.hpp>

#include <atomic>
#include <memory>

namespace doccam {

// Owns the decoder; null without one.
using DecoderSlot = std::atomic<MjpegDecoder*>;

// Creates the slot's decoder; does nothing if it exists. Opens the module of libav; if that fails,
// reports it on standard error, and the decoder's frames are errors. Host thread, while no camera
// streams.
void createDecoder(DecoderSlot& slot);

// Releases the decoder, if there is one. Not while a frame is being decoded.
void releaseDecoder(DecoderSlot& slot);

// Decodes a frame into out, red first. out must hold the wanted pixels continuously; a picture of
// another size is scaled. On failure out is unchanged. Does nothing without a decoder or data.
void decodeInto(const DecoderSlot& slot, const MjpegFrame& frame, cv::Mat& out);

// A picture besides the decoder's own; null if there can be none. It may outlive the decoder.
using MjpegPicture = std::unique_ptr<AVFrame, void (*)(AVFrame*)>;
MjpegPicture makeMjpegPicture(const DecoderSlot& slot);

// The first of its two steps: decodes the JPEG, into the decoder's own picture or into another one,
// while storeFrame() may run. Prints nothing.
Decoded decodeFrame(const DecoderSlot& slot, const MjpegFrame& frame, AVFrame* picture = nullptr);

// Makes another picture the one that storeFrame() uses.
void adoptPicture(const DecoderSlot& slot, AVFrame& picture);

// The second step: writes the decoded picture to out, or prints that decoding failed.
void storeFrame(const DecoderSlot& slot, Decoded decoded, FrameSize wanted, cv::Mat& out);

} // namespace doccam
