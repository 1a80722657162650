// Faults for the host's fault callback, and stages that survive them.
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

// Reports the exception in flight; rethrows it when the host has no fault callback.
void reportException(DoccamFault fault);

// Calls the fault callback, if any: at once, or when the thread's DeferredFaults are reported.
void reportFault(Fault fault);

// The cause of the fault that the calling thread's fault callback is running for; none elsewhere.
DoccamCause currentCause();

// Collects the faults of the thread that makes it until the host may be called.
class DeferredFaults {
  public:
    DeferredFaults();
    ~DeferredFaults();

    DeferredFaults(const DeferredFaults&) = delete;
    DeferredFaults& operator=(const DeferredFaults&) = delete;

    void add(Fault fault) { faults_.push_back(std::move(fault)); }

    bool empty() const { return faults_.empty(); }

    // Reports each of them to the host, and forgets them.
    void report();

  private:
    std::vector<Fault> faults_;
};

// Runs stage; with a fault callback an exception ends only that. True when there was none.
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
