// A second thread that takes a piece of work off another one's hands.
#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <thread>

namespace doccam {

// One piece of work at a time. All but waitUntilIdle() is for one thread, the owner.
class DecodeThread {
  public:
    DecodeThread() = default;

    ~DecodeThread() { end(); }

    DecodeThread(const DecodeThread&) = delete;
    DecodeThread& operator=(const DecodeThread&) = delete;

    // Begins work, which the thread does; the owner does it here and now when the system has no
    // thread to give. finish() comes before the next begin().
    void begin(std::function<void()> work);

    // Waits for the work and throws what it threw.
    void finish();

    // Waits for the work.
    void waitUntilIdle() const;

    // Waits for the work and ends the thread; begin() starts another one.
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
