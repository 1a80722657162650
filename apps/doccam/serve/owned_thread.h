// A thread with a stack of known size, joined by its owner.
#pragma once

#include <cstddef>
#include <functional>
#include <thread>

namespace doccam::serve {

// std::thread uses the shell's stack limit, which may be far too small.
inline constexpr std::size_t kStackBytes = std::size_t{8} * 1024 * 1024;

// Runs body, which must not throw, on a thread of its own; threads started from now on have such
// stacks, too. Throws std::system_error if the thread cannot be created.
std::jthread ownedThread(std::function<void()> body);

} // namespace doccam::serve
