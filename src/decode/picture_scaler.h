// Converts decoded pictures to packed red-first pixels of another size.
#pragma once

#include "base/codec_handles.h"

namespace doccam {

// A bicubic scaler from pictures like source (its size and pixel format) to width x height pixels,
// three bytes each, red first. Null when the scaler library cannot do it. Prints nothing.
CodecScaler makeScaler(const AVFrame& source, int width, int height);

// True when picture has every pixel that scaler reads: its pixel format, and at least its size.
bool coversSource(const AVFrame& picture, SwsContext& scaler);

// Scales the top-left part of picture, which must cover the scaler's source, into converted. All of
// its rows at once: given fewer, the scaler library may read before its own tables.
void scalePicture(SwsContext& scaler, const AVFrame& picture, AVFrame& converted);

} // namespace doccam
