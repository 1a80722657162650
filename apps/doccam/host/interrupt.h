// Ctrl-C and its relatives, as a descriptor to wait for instead of a handler.
#pragma once

#include "host/failure.h"

#include <chrono>
#include <csignal>
#include <optional>
#include <thread>

namespace doccam::host {

// Holds SIGINT, SIGTERM and SIGHUP back, also from the programs that this process becomes, but for
// those that are ignored, as under nohup. Returns those held back.
sigset_t holdSignalsBack();

// Waits for the signals that holdSignalsBack holds back, and for those that came since that was
// called. The first is told here. A process with patience that has not ended by
// then ends at once, with a code and without its work folders; without patience it goes on
// until a signal comes half a second after the first or later. Make it before the process has
// threads, which inherit what is held back.
class Interrupt {
  public:
    using Patience = std::optional<std::chrono::milliseconds>;

    explicit Interrupt(Patience patience = std::nullopt, int code = kInterrupted);
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    // Readable once the process has been asked to end.
    int descriptor() const { return asked_; }

    // Whether it has; stays true.
    bool raised() const;

    // Throws Interruption if it has.
    void check() const;

    // Waits for signals on another thread than before, which has what its starter has given up.
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
