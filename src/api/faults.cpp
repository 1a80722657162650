#include "api/faults.h"

#include "api/library_state.h"

namespace doccam {
namespace {

thread_local FaultNotes* notesOfThread = nullptr;

void tellHost(DoccamFault fault, const std::string& message) {
    if (const FaultCallback callback = state().faultCallback.load(std::memory_order_acquire)) {
        callback(fault, message.c_str());
    }
}

} // namespace

bool hostHearsFaults() {
    return state().faultCallback.load(std::memory_order_acquire) != nullptr;
}

void reportFault(DoccamFault fault, std::string message) {
    if (!hostHearsFaults()) {
        return;
    }
    if (notesOfThread != nullptr) {
        notesOfThread->add(fault, std::move(message));
    } else {
        tellHost(fault, message);
    }
}

FaultNotes::FaultNotes() {
    notesOfThread = this;
}

FaultNotes::~FaultNotes() {
    notesOfThread = nullptr;
}

void FaultNotes::tell() {
    for (const auto& [fault, message] : std::exchange(notes_, {})) {
        tellHost(fault, message);
    }
}

} // namespace doccam

int SetFaultCallback(FaultCallback callback) {
    doccam::state().faultCallback.store(callback, std::memory_order_release);
    return 0;
}
