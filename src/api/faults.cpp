#include "api/faults.h"

#include "api/boundary.h"
#include "api/library_state.h"

#include <exception>

namespace doccam {
namespace {

thread_local FaultNotes* notesOfThread = nullptr;

void tellHost(DoccamFault fault, const std::string& message) {
    if (const FaultCallback callback = state().faultCallback.load(std::memory_order_acquire)) {
        guarded("the fault callback", 0, [&] {
            callback(fault, message.c_str());
            return 0;
        });
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

void reportException(DoccamFault fault) {
    if (!hostHearsFaults()) {
        throw;
    }
    try {
        throw;
    } catch (const std::exception& error) {
        reportFault(fault, error.what());
    } catch (...) {
        reportFault(fault, "unknown error");
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
