// The life of a session's streaming thread, which is given up when stuck in a call.
#pragma once

#include "capture/decode_thread.h"
#include "state/frames.h"

#include <pthread.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace doccam {

// Host threads call start() and stop(); everything else is for the thread itself.
//
// The thread is "inside" while it works on the library's state, and "outside" while it waits in
// the driver, runs a callback of the host or writes a file. Only outside can it be given up: it
// finds out when it comes back inside, and ends. It locks only once it has been asked to stop.
class StreamingThread : public std::enable_shared_from_this<StreamingThread> {
  public:
    using Work = void (*)(StreamingThread&);

    // For a thread that writes frames and keeps them until it ends.
    explicit StreamingThread(std::shared_ptr<Frames> frames)
      : frames_(std::move(frames)) {}

    // Runs work on a new thread. False when none can be created.
    bool start(Work work);

    // Runs work on the calling thread, for a host that brings its own.
    void run(Work work);

    Frames& frames() { return *frames_; }

    // True on any streaming thread, as in a callback.
    static bool isCurrentThread();

    // Its work uses the library's state, too, so the thread is not given up before it is done.
    DecodeThread& decodeThread() { return decodeThread_; }

    // How long stop() waits for a thread that stays outside.
    struct Patience {
        std::chrono::milliseconds inCall;    // of the driver or a callback
        std::chrono::milliseconds inWriting; // a file, which takes a slow disk its time
    };

    // Asks the thread to end and joins it, or gives it up when patience is over and it is outside;
    // at once when called on the thread itself. Does nothing if it was never started here.
    void stop(Patience patience);

    // True when stop() had to give the thread up.
    bool abandoned() const { return phase_.load(std::memory_order_acquire) == Phase::kAbandoned; }

    // True when it was writing a file when it was given up. For the caller of stop().
    bool abandonedInWriting() const { return abandonedInWriting_; }

    bool stopRequested() const { return stopRequested_.load(std::memory_order_acquire); }

    // True in the process that started the thread; a forked child has no such thread.
    bool ofThisProcess() const { return process_ == getpid(); }

    // Runs call outside. False when the thread has been given up meanwhile.
    template <typename Call>
    bool outside(Call&& call) {
        return runAs(Phase::kInCall, std::forward<Call>(call));
    }

    // The same for write, which may hang forever, as on a pipe that nobody reads or a dead network
    // disk, and must use nothing that the end of a session releases.
    template <typename Write>
    bool writing(Write&& write) {
        return runAs(Phase::kWriting, std::forward<Write>(write));
    }

  private:
    using Clock = std::chrono::steady_clock;
    enum class Phase { kInside, kInCall, kWriting, kAbandoned };

    template <typename Call>
    bool runAs(Phase phase, Call&& call) {
        goOutside(phase);
        try {
            std::forward<Call>(call)();
        } catch (...) {
            comeInside(phase);
            throw;
        }
        return comeInside(phase);
    }

    void goOutside(Phase to);

    bool comeInside(Phase from) {
        return phase_.compare_exchange_strong(from, Phase::kInside, std::memory_order_acq_rel);
    }

    bool giveUp(Phase in);

    const std::shared_ptr<Frames> frames_;
    pthread_t thread_{};
    pid_t process_ = 0; // 0: never started
    std::atomic<bool> stopRequested_{false};
    std::atomic<Phase> phase_{Phase::kInside};
    std::mutex mutex_; // for what follows
    std::condition_variable changed_;
    Clock::time_point outsideSince_; // since it was asked to stop
    bool ended_ = false;
    bool abandonedInWriting_ = false;
    DecodeThread decodeThread_;
};

} // namespace doccam
