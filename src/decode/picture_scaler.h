// Converts decoded pictures to packed red-first pixels of another size.
#pragma once

#include "base/handles/codec_handles.h"

#include <cstdint>

namespace doccam {

// A bicubic scaler from pictures like source (its size and pixel format) to width x height pixels,
// three bytes each, red first, which shares its rows among as many threads where it can. Null when
// libswscale cannot do it. Prints nothing.
CodecScaler makeScaler(const AVFrame& source, int width, int height, int threads);

// True when picture has every pixel that scaler reads: its pixel format, and at least its size.
bool coversSource(const AVFrame& picture, SwsContext& scaler);

// True when all the scaler does for a picture of width x height pixels is to change its colours,
// row by row in whole blocks, so that it writes the picture's own bytes only where rows are such
// blocks.
bool changesColoursOnly(SwsContext& scaler, int width, int height);

// Where scaled pixels go: count rows, step bytes apart.
struct ScaledRows {
    std::uint8_t* first;
    int step;
    int count;
};

// Scales the top-left part of picture, which must cover the scaler's source, into target, which has
// as many rows as the scaler makes. All of its rows at once: given fewer, libswscale may
// read before its own tables.
void scalePicture(SwsContext& scaler, const AVFrame& picture, ScaledRows target);

} // namespace doccam
