// What libjpeg does here on a fatal error: print the message and jump back.
#pragma once

#include <csetjmp>
#include <cstddef>
#include <cstdio>

// Needs the C standard types before it.
extern "C" {
#include <jpeglib.h>
}

namespace doccam {

// MyErrorExit finds the jump buffer behind the manager.
struct JpegErrors {
    jpeg_error_mgr manager;
    std::jmp_buf escape;
};

static_assert(offsetof(JpegErrors, escape) == sizeof(jpeg_error_mgr));

} // namespace doccam
