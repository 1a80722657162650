// Printing a failed request.
#pragma once

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace doccam {

// Prints the request with errno, its text and end, and returns code.
inline int requestFailed(const char* request, int code, const char* end = "") {
    const int error = errno;
    std::printf("%s failed %d(%s)%s", request, error, strerror(error), end);
    return code;
}

} // namespace doccam
