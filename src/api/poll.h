// How a host's thread waits for the streaming thread.
#pragma once

#include <doccam/doccam.hpp>

namespace doccam {

inline constexpr int kPollMilliseconds = 50;

// Sleeps while the condition holds, at most mostWaits times.
template <typename Condition>
void pollWhile(Condition&& condition, int mostWaits) {
    for (int waits = 0; condition() && waits < mostWaits; ++waits) {
        Sleep(kPollMilliseconds);
    }
}

} // namespace doccam
