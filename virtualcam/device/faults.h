// What goes wrong with a camera, and when.
#pragma once

#include "description.h"

#include <optional>
#include <string>
#include <vector>

namespace doccam::virtualcam {

// Counts calls and frames against the faults that were set. Not thread-safe.
class FaultPlan {
  public:
    void add(const Fault& fault);
    void clear();

    // Notes one call of a request; the error it must fail with, 0 for none.
    int noteCall(const std::string& request);

    // Notes that one more frame is due; the faults that befall it.
    std::vector<Fault> noteFrame();

    // Whether the next frame stays away, and a way to let it come after all.
    bool stallsNextFrame() const;
    void forgetNextStall();

    // What a request for count buffers is granted.
    std::uint32_t granted(std::uint32_t count) const;

    // The length of each buffer when it is not the driver's own choice.
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
