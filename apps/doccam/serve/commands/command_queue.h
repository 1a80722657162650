// The queue of work for the one thread that calls the library.
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

// Any thread submits, one thread serves. Commands run in order of arrival.
class CommandQueue {
  public:
    // Commands beyond longest waiting ones are refused with a reason that says what to do.
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
        push([task = std::move(task)] { (*task)(); });
        try {
            return result.get();
        } catch (const std::future_error&) {
            throw Busy("the server is ending");
        }
    }

    // Serves one command if one arrives in time. False after close().
    bool serve(std::chrono::milliseconds patience);

    // Drops waiting commands and refuses new ones.
    void close();

  private:
    void push(std::function<void()> command);

    const std::size_t longest_;
    const std::string refusal_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> waiting_;
    bool closed_ = false;
};

} // namespace doccam::serve
