// Faults that the host wants to hear of, and stages that survive them.
#pragma once

#include <doccam/doccam.h>

#include <exception>
#include <string>
#include <utility>
#include <vector>

namespace doccam {

// True while the host has a fault callback. Only then are exceptions contained.
bool hostHearsFaults();

// Tells the host, if it listens: at once, or when the thread's FaultNotes are told.
void reportFault(DoccamFault fault, std::string message);

// Keeps the faults of the thread that makes it, for a moment at which the host may be called.
class FaultNotes {
  public:
    FaultNotes();
    ~FaultNotes();

    FaultNotes(const FaultNotes&) = delete;
    FaultNotes& operator=(const FaultNotes&) = delete;

    void add(DoccamFault fault, std::string message) {
        notes_.emplace_back(fault, std::move(message));
    }

    bool empty() const { return notes_.empty(); }

    // Tells the host each of them, and forgets them.
    void tell();

  private:
    std::vector<std::pair<DoccamFault, std::string>> notes_;
};

// Runs stage. Where the host hears faults, an exception ends only the stage, and is reported.
template <typename Stage>
void containing(DoccamFault fault, Stage&& stage) {
    if (!hostHearsFaults()) {
        std::forward<Stage>(stage)();
        return;
    }
    try {
        std::forward<Stage>(stage)();
    } catch (const std::exception& error) {
        reportFault(fault, error.what());
    } catch (...) {
        reportFault(fault, "unknown error");
    }
}

} // namespace doccam
