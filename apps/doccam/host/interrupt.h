// Termination signals, as a descriptor to wait for instead of a handler.
#pragma once

#include "host/failure.h"

#include <chrono>
#include <csignal>
#include <optional>
#include <thread>

namespace doccam::host {

// Blocks SIGINT, SIGTERM and SIGHUP, also across exec, except for those that are ignored, as under
// nohup. Returns the blocked ones.
sigset_t blockSignals();

// Waits for the signals that blockSignals blocks, including those pending since then. With
// patience, a process that has not ended that long after the first signal ends at once with code,
// removing its work folders; without, a second signal at least half a second later kills it. Create
// it before the process has threads, which inherit the signal mask.
class Interrupt {
  public:
    using Patience = std::optional<std::chrono::milliseconds>;

    explicit Interrupt(Patience patience = std::nullopt, int code = kInterrupted);
    ~Interrupt();

    // Readable once the process has been asked to end.
    int descriptor() const { return asked_; }

    // Whether the process has been asked to end; stays true.
    bool raised() const;

    // Throws Interruption if raised().
    void check() const;

    // Restarts the waiting thread, so that it inherits the calling thread's confinement.
    void waitOnNewThread();

  private:
    void watch() const;
    void endThread();
    void endUnlessEndedSoon() const;

    const Patience patience_;
    const int code_;
    const sigset_t signals_;
    const int watched_;
    const int asked_;
    const int ended_;
    std::thread thread_;
};

} // namespace doccam::host
