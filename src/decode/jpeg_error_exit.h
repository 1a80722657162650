// What libjpeg does here on a fatal error: print the message and jump back.
#pragma once

#include "base/handles/libjpeg.h"

#include <csetjmp>
#include <cstddef>

namespace doccam {

// exitOnJpegError() finds the jump buffer right after the manager.
struct JpegErrors {
    jpeg_error_mgr manager;
    std::jmp_buf escape;
};

static_assert(offsetof(JpegErrors, escape) == sizeof(jpeg_error_mgr));

// An error exit: prints the pending message and jumps to the manager's buffer.
void exitOnJpegError(jpeg_common_struct* cinfo);

} // namespace doccam
