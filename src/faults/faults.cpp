#include "faults/faults.h"

#include "base/guarded.h"
#include "state/library_state.h"

#include <exception>

namespace doccam {
namespace {

thread_local DeferredFaults* deferredOfThread = nullptr;
thread_local DoccamCause causeOfThread = DOCCAM_CAUSE_NONE;

// A fault callback may end a document, whose own fault is then reported inside it.
void callHost(const Fault& fault) {
    if (const FaultCallback callback =
            state().settings.faultCallback.load(std::memory_order_acquire)) {
        const DoccamCause outer = std::exchange(causeOfThread, fault.cause);
        guarded("the fault callback", 0, [&] {
            callback(fault.kind, fault.message.c_str());
            return 0;
        });
        causeOfThread = outer;
    }
}

} // namespace

bool hasFaultCallback() {
    return state().settings.faultCallback.load(std::memory_order_acquire) != nullptr;
}

void reportFault(Fault fault) {
    if (!hasFaultCallback()) {
        return;
    }
    if (deferredOfThread != nullptr) {
        deferredOfThread->add(std::move(fault));
    } else {
        callHost(fault);
    }
}

void reportException(DoccamFault fault) {
    if (!hasFaultCallback()) {
        throw;
    }
    try {
        throw;
    } catch (const std::exception& error) {
        reportFault({fault, DOCCAM_CAUSE_OTHER, error.what()});
    } catch (...) {
        reportFault({fault, DOCCAM_CAUSE_OTHER, "unknown error"});
    }
}

DeferredFaults::DeferredFaults() {
    deferredOfThread = this;
}

DeferredFaults::~DeferredFaults() {
    deferredOfThread = nullptr;
}

void DeferredFaults::report() {
    for (const Fault& fault : std::exchange(faults_, {})) {
        callHost(fault);
    }
}

DoccamCause currentCause() {
    return causeOfThread;
}

} // namespace doccam
