// MJPEG frames through the process-wide decoder.
#pragma once

#include <opencv2/core/mat.hpp>

#include <span>

namespace doccam {

// Decodes one JPEG into out as do_excute_image does. With padded set, data is followed by
// kCodecPadding zero bytes, and is not copied.
void decodeFrame(std::span<const unsigned char> data, bool padded, int width, int height,
                 cv::Mat& out);

} // namespace doccam
