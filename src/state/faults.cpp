#include "state/faults.h"

#include "base/guarded.h"
#include "state/library_state.h"

#include <exception>

namespace doccam {
namespace {

thread_local DeferredFaults* notesOfThread = nullptr;
thread_local DoccamCause causeOfThread = DOCCAM_CAUSE_NONE;

// A fault callback may end a document, whose fault is then told within it.
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
    if (notesOfThread != nullptr) {
        notesOfThread->add(std::move(fault));
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
    notesOfThread = this;
}

DeferredFaults::~DeferredFaults() {
    notesOfThread = nullptr;
}

void DeferredFaults::tell() {
    for (const Fault& fault : std::exchange(notes_, {})) {
        callHost(fault);
    }
}

DoccamCause currentCause() {
    return causeOfThread;
}

} // namespace doccam
