// Turning exceptions into results at the C boundary.
#pragma once

#include <cstdio>
#include <exception>

namespace doccam {

// Runs action and returns its result; failed, with a line on standard error, for an exception.
template <typename Result, typename Action>
Result guarded(const char* operation, Result failed, Action&& action) noexcept {
    try {
        return action();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "doccam: %s: %s\n", operation, error.what());
    } catch (...) {
        std::fprintf(stderr, "doccam: %s: unknown error\n", operation);
    }
    return failed;
}

} // namespace doccam
