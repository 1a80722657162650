// A thread with a stack of known size, joined by its owner.
#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>
#include <memory>

namespace doccam::serve {

// std::thread uses the shell's stack limit, which may be far too small.
class OwnedThread {
  public:
    static constexpr std::size_t kStackBytes = std::size_t{8} * 1024 * 1024;

    OwnedThread() = default;
    // Runs body, which must not throw. Throws std::system_error if the thread cannot be created.
    explicit OwnedThread(std::function<void()> body);
    // Waits for body to return.
    ~OwnedThread();
    OwnedThread(OwnedThread&& other) noexcept;
    OwnedThread& operator=(OwnedThread&& other) noexcept;
    OwnedThread(const OwnedThread&) = delete;
    OwnedThread& operator=(const OwnedThread&) = delete;

    void join();

  private:
    pthread_t thread_{};
    bool joinable_ = false;
};

} // namespace doccam::serve
