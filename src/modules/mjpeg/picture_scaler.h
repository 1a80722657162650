// Converting decoded pictures to packed red-first pixels of another size.
#pragma once

#include "modules/mjpeg/codec_handles.h"

#include <cstdint>

namespace doccam {

// A bicubic scaler from pictures of source's size and pixel format to width x height red-first
// pixels of three bytes, sharing its rows among threads where possible. Null if libswscale cannot
// do it. Prints nothing.
CodecScaler makeScaler(const AVFrame& source, int width, int height, int threads);

// Whether picture has every pixel that scaler reads: the same pixel format and at least its size.
bool coversSource(const AVFrame& picture, SwsContext& scaler);

// Whether the scaler only converts the colours of a picture of width x height pixels. It then
// writes each row in whole blocks, so nothing outside the picture if rows consist of whole blocks.
bool changesColoursOnly(SwsContext& scaler, int width, int height);

// The target of scaled pixels: count rows, step bytes apart.
struct ScaledRows {
    std::uint8_t* first;
    int step;
    int count;
};

// Scales the top-left part of picture, which must cover the scaler's source, into target, which
// must have as many rows as the scaler makes. All rows at once: given fewer, libswscale may read
// before the start of its tables.
void scalePicture(SwsContext& scaler, const AVFrame& picture, ScaledRows target);

} // namespace doccam
