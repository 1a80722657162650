// Pauses and polling.
#pragma once

#include <sys/select.h>

namespace doccam {

// Waits for less than a second, by select() with only a timeout.
inline void pauseFor(int milliseconds) {
    timeval wait{.tv_sec = 0, .tv_usec = static_cast<suseconds_t>(milliseconds) * 1000};
    select(0, nullptr, nullptr, nullptr, &wait);
}

inline constexpr int kPollMilliseconds = 50;

// How a host thread waits for the streaming thread: at most maximumWaits pauses.
template <typename Condition>
void pollWhile(Condition&& condition, int maximumWaits) {
    for (int waits = 0; condition() && waits < maximumWaits; ++waits) {
        pauseFor(kPollMilliseconds);
    }
}

} // namespace doccam
