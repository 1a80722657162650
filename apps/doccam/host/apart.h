// Processing untrusted data in a separate process.
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
    using Time = std::optional<std::chrono::seconds>; // none: unlimited

    std::uint64_t bytes = 0; // memory beyond what this process already has
    Time processor{};        // processor time
    Time wall{};             // real time, including waiting
    bool confined = false;   // confined like confineCalls
};

enum class ApartEnd {
    kDone,
    kOutOfTime,
    kCrashed // also on lack of memory and on malformed or oversized reports
};

struct Apart {
    ApartEnd end = ApartEnd::kDone;
    std::vector<std::string> reports; // in the order they were made
};

using Report = std::function<void(const std::string&)>;

// Runs work in a forked child and returns its reports, at most a mebibyte, however it ends. Throws
// a Failure thrown by work; kills the child and throws Interruption when the process is asked to
// end. The child has only one thread, so use this before a camera is opened.
Apart runApart(const Interrupt& interrupt, const Bounds& bounds,
               const std::function<void(const Report&)>& work);

} // namespace doccam::host
