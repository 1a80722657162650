// A camera's faults and when they strike.
#pragma once

#include "description.h"

#include <optional>
#include <string>
#include <vector>

namespace doccam::virtualcam {

// Counts calls and frames against the set faults. Not thread-safe.
class FaultPlan {
  public:
    void add(const Fault& fault);
    void clear();

    // Counts one call of a request; returns the error it must fail with, or 0.
    int noteCall(const std::string& request);

    // Counts one more due frame; returns its faults.
    std::vector<Fault> noteFrame();

    // Whether the next frame is held back; forgetNextStall() releases it.
    bool stallsNextFrame() const;
    void forgetNextStall();

    // The number of buffers granted for a request of count.
    std::uint32_t granted(std::uint32_t count) const;

    // The length of each buffer: usual, unless a fault sets it.
    std::uint32_t bufferBytes(std::uint32_t usual) const;

  private:
    struct Pending {
        Fault fault;
        int seen = 0;
    };

    static bool strikes(Pending& pending);
    static bool isNextStall(const Pending& pending);
    const Fault* find(FaultKind kind) const;

    std::vector<Pending> pending_;
};

} // namespace doccam::virtualcam
