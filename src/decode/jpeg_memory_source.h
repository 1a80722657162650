// A libjpeg source over memory, which ends early data with a marker, and fatal errors.
#pragma once

#include "base/handles/libjpeg.h"

#include <csetjmp>
#include <cstddef>
#include <span>

namespace doccam {

// exitOnJpegError() expects the jump buffer right after the manager.
struct JpegErrors {
    jpeg_error_mgr manager;
    std::jmp_buf escape;
};

static_assert(offsetof(JpegErrors, escape) == sizeof(jpeg_error_mgr));

// Prints the pending message and jumps to the buffer after the manager.
void exitOnJpegError(jpeg_common_struct* cinfo);

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

// Makes data, which must outlive it, the decompression's input. Raises libjpeg's error if empty.
void readFromMemory(jpeg_decompress_struct* cinfo, std::span<const unsigned char> data,
                    const SourceCallbacks& callbacks = {});

} // namespace doccam
