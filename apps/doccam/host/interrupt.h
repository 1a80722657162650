// Termination signals, as a descriptor to wait for instead of a handler.
#pragma once

#include "host/failure.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <mutex>
#include <optional>
#include <string>
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

    // What the first Ctrl-C asks for: the end, or to finish in the command's own time, after which
    // a second one asks for the end, as any other signal does.
    enum class CtrlC { kEnds, kFinishes };

    explicit Interrupt(Patience patience = std::nullopt, int code = kInterrupted,
                       CtrlC ctrlC = CtrlC::kEnds);
    ~Interrupt();

    // Readable once the process has been asked to end.
    int descriptor() const { return asked_; }

    // Whether the process has been asked to end; stays true.
    bool raised() const;

    // Throws Interruption if raised().
    void check() const;

    // Whether the process has been asked to end, not only to finish; stays true.
    bool mustEnd() const { return mustEnd_; }

    // What to complain of when the process is ended for lack of patience. Any thread.
    void setLastWords(const std::string& words);

    // Restarts the waiting thread, so that it inherits the calling thread's confinement.
    void waitOnNewThread();

  private:
    void watch();
    void onSignal(int number);
    void endThread();
    void endUnlessEndedSoon();

    const Patience patience_;
    const int code_;
    const CtrlC ctrlC_;
    std::atomic<bool> mustEnd_{false};
    std::optional<std::chrono::steady_clock::time_point> first_; // the watching thread's
    std::mutex lastWordsMutex_;
    std::string lastWords_;
    const sigset_t signals_;
    const int watched_;
    const int asked_;
    const int ended_;
    std::thread thread_;
};

} // namespace doccam::host
