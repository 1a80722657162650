// Printing a failed request.
#pragma once

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace doccam {

// Prints format, which has two conversions, with errno and its text, and returns code.
inline int requestFailed(const char* format, int code) {
    const int error = errno;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::printf(format, error, strerror(error));
#pragma GCC diagnostic pop
    return code;
}

} // namespace doccam
