// Faults that the host wants to hear of, and stages that survive them.
#pragma once

#include <doccam/types.h>

#include <string>
#include <utility>
#include <vector>

namespace doccam {

struct Fault {
    DoccamFault kind;
    DoccamCause cause;
    std::string message;
};

// True while the host has a fault callback. Only then are exceptions contained.
bool hasFaultCallback();

// Reports the exception in flight, or lets it go on where the host does not hear faults.
void reportException(DoccamFault fault);

// Tells the host, if it listens: at once, or when the thread's DeferredFaults are told.
void reportFault(Fault fault);

// The cause of the fault that the calling thread's fault callback is being told; none elsewhere.
DoccamCause currentCause();

// Keeps the faults of the thread that makes it, for a moment at which the host may be called.
class DeferredFaults {
  public:
    DeferredFaults();
    ~DeferredFaults();

    DeferredFaults(const DeferredFaults&) = delete;
    DeferredFaults& operator=(const DeferredFaults&) = delete;

    void add(Fault fault) { notes_.push_back(std::move(fault)); }

    bool empty() const { return notes_.empty(); }

    // Tells the host each of them, and forgets them.
    void tell();

  private:
    std::vector<Fault> notes_;
};

// Runs stage. Where the host hears faults, an exception ends only the stage, and is reported. True
// when there was none.
template <typename Stage>
bool containing(DoccamFault fault, Stage&& stage) {
    try {
        std::forward<Stage>(stage)();
        return true;
    } catch (...) {
        reportException(fault);
        return false;
    }
}

} // namespace doccam
