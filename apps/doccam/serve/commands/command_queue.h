// A queue of work for threads that serve it, such as the one that calls the library.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace doccam::serve {

// The command was not started: too many are waiting, or the server is ending.
struct Busy : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Any thread submits, others serve. Commands start in order of arrival.
class CommandQueue {
  public:
    // Up to longest commands may wait besides those that idle threads are about to take; others are
    // refused with a reason that says what to do.
    explicit CommandQueue(std::size_t longest = 32,
                          std::string refusal = "too many commands are waiting; try again")
      : longest_(longest)
      , refusal_(std::move(refusal)) {}

    // Runs command on the serving thread, waits for it and returns its result or rethrows its
    // exception. Throws Busy without running it.
    template <typename Command>
    auto order(Command command) {
        using Result = std::invoke_result_t<Command>;
        auto task = std::make_shared<std::packaged_task<Result()>>(std::move(command));
        std::future<Result> result = task->get_future();
        // Owned only by the queue, so that a dropped task breaks its promise.
        std::function<void()> owner = [task = std::move(task)] { (*task)(); };
        if (!offer(owner)) {
            throw Busy(refusal_);
        }
        try {
            return result.get();
        } catch (const std::future_error&) {
            throw Busy("the server is ending");
        }
    }

    // Takes over command; returns false, leaving it unchanged, if too many wait. Throws Busy after
    // close().
    bool offer(std::function<void()>& command);

    // Serves one command if one arrives in time. False after close().
    bool serve(std::chrono::milliseconds patience);

    // Serves commands on the calling thread until close().
    void serve();

    // Drops waiting commands and refuses new ones.
    void close();

  private:
    const std::size_t longest_;
    const std::string refusal_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> waiting_;
    std::size_t idle_ = 0; // serving threads that wait
    bool closed_ = false;
};

} // namespace doccam::serve
