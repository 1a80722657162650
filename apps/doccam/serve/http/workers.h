// A thread pool of fixed size.
#pragma once

#include "serve/owned_thread.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

namespace doccam::serve {

class Workers {
  public:
    // Up to longest pieces of work may wait for a thread.
    Workers(std::size_t threads, std::size_t longest);
    // Waits for running work; drops waiting work.
    ~Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    // Takes over work, which must not throw; returns false, leaving it unchanged, if too much
    // waits.
    bool take(std::function<void()>& work);

  private:
    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> waiting_;
    const std::size_t longest_;
    std::size_t idle_ = 0;
    bool closed_ = false;
    std::vector<OwnedThread> threads_;
};

} // namespace doccam::serve
