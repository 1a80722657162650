// How a host's thread waits for the streaming thread.
#pragma once

#include "base/pause.h"

namespace doccam {

inline constexpr int kPollMilliseconds = 50;

// Pauses while the condition holds, at most maximumWaits times.
template <typename Condition>
void pollWhile(Condition&& condition, int maximumWaits) {
    for (int waits = 0; condition() && waits < maximumWaits; ++waits) {
        pauseFor(kPollMilliseconds);
    }
}

} // namespace doccam
