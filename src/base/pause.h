// Pauses and polling.
#pragma once

namespace doccam {

// Waits for less than a second, by select() with only a timeout.
void pauseFor(int milliseconds);

inline constexpr int kPollMilliseconds = 50;

// How a host thread waits for the streaming thread: pauses while the condition holds, at most
// maximumWaits times.
template <typename Condition>
void pollWhile(Condition&& condition, int maximumWaits) {
    for (int waits = 0; condition() && waits < maximumWaits; ++waits) {
        pauseFor(kPollMilliseconds);
    }
}

} // namespace doccam
