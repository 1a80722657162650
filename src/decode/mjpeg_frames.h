// MJPEG frames through the process-wide decoder.
#pragma once

#include "decode/mjpeg_decoder.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// The two steps of do_excute_image. First decodes one JPEG. Prints nothing.
Decoded decodeFrame(const MjpegFrame& frame);

// The same into a picture of the caller's, beside which storeFrame() may run; and that picture made
// the one that storeFrame() takes.
Decoded decodeFrameInto(AVFrame& picture, const MjpegFrame& frame);
void adoptPicture(AVFrame& picture);

// Then writes what has been decoded to out, or prints that nothing could be.
void storeFrame(Decoded decoded, int width, int height, cv::Mat& out);

} // namespace doccam
