// A second thread that works beside the one that owns it.
#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <thread>

namespace doccam {

// One piece of work at a time. Only waitUntilIdle() may be called by a thread other than the owner.
class DecodeThread {
  public:
    DecodeThread() = default;

    ~DecodeThread() { end(); }

    DecodeThread(const DecodeThread&) = delete;
    DecodeThread& operator=(const DecodeThread&) = delete;

    // Begins work, on the caller's thread when none can be created. Call finish() before the next.
    void begin(std::function<void()> work);

    // Waits for the work and rethrows its exception.
    void finish();

    // Waits for the work.
    void waitUntilIdle() const;

    // Waits for the work and ends the thread; begin() starts a new one.
    void end();

  private:
    enum class Phase { kIdle, kWorking, kEnding };

    void run();
    void work();

    std::atomic<Phase> phase_{Phase::kIdle};
    std::function<void()> work_;
    std::exception_ptr failure_;
    std::thread thread_;
};

} // namespace doccam
