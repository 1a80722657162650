// The line that a failed request prints.
#pragma once

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace doccam {

// Prints a line with two conversions, the error's number and its text, and returns code.
template <typename Code>
Code requestFailed(const char* format, Code code) {
    const int error = errno;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::printf(format, error, strerror(error));
#pragma GCC diagnostic pop
    return code;
}

} // namespace doccam
