// Work on what nobody has checked, in a process of its own.
#pragma once

#include "host/interrupt.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace doccam::host {

struct Bounds {
    using Time = std::optional<std::chrono::seconds>; // none: as long as it takes

    std::uint64_t bytes = 0; // of memory beyond what this process has
    Time processor{};        // of processors
    Time wall{};             // of the clock, whatever it waits for
    bool confined = false;   // what confineCalls holds back is held back
};

enum class ApartEnd {
    kDone,
    kOutOfTime,
    kCrashed // also of lack of memory, and after reports that are too long or none
};

struct Apart {
    ApartEnd end = ApartEnd::kDone;
    std::vector<std::string> reports; // in the order in which they were made
};

using Report = std::function<void(const std::string&)>;

// Runs work in a copy of this process and returns what it has reported, a mebibyte at most,
// whatever its end. Throws what work throws as Failure; Interruption, with the copy gone, when the
// process is asked to end. The copy has no threads but its own: for use before a camera is opened.
Apart runApart(const Interrupt& interrupt, const Bounds& bounds,
               const std::function<void(const Report&)>& work);

} // namespace doccam::host
