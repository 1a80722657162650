// Handling of fatal libjpeg errors: print the message and jump back.
#pragma once

#include "base/handles/libjpeg.h"

#include <csetjmp>
#include <cstddef>

namespace doccam {

// exitOnJpegError() expects the jump buffer right after the manager.
struct JpegErrors {
    jpeg_error_mgr manager;
    std::jmp_buf escape;
};

static_assert(offsetof(JpegErrors, escape) == sizeof(jpeg_error_mgr));

// Prints the pending message and jumps to the buffer after the manager.
void exitOnJpegError(jpeg_common_struct* cinfo);

} // namespace doccam
