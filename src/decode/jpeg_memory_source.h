// A libjpeg source over memory, which supplies an end marker if the data ends early.
#pragma once

#include "decode/jpeg_error_exit.h"

#include <span>

namespace doccam {

// Supplies the two bytes of an end marker, with libjpeg's warning of a premature end.
int serveEndOfImage(jpeg_decompress_struct* cinfo);

// Skips count bytes of the input, also past its end; none for a count below 1.
void skipInput(jpeg_decompress_struct* cinfo, long count);

inline void ignore(jpeg_decompress_struct* /*cinfo*/) {}

struct SourceCallbacks {
    void (*begin)(jpeg_decompress_struct*) = ignore;
    int (*fill)(jpeg_decompress_struct*) = serveEndOfImage;
    void (*skip)(jpeg_decompress_struct*, long) = skipInput;
    void (*end)(jpeg_decompress_struct*) = ignore;
};

// Makes data, which must outlive the decompression, the input. Raises libjpeg's error if it is
// empty.
void readFromMemory(jpeg_decompress_struct* cinfo, std::span<const unsigned char> data,
                    const SourceCallbacks& callbacks = {});

} // namespace doccam
