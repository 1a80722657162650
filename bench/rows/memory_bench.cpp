// A session's memory: allocations per frame, and the total.
#include "allocations.h"
#include "live_session.h"
#include "row.h"

#include <malloc.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

namespace doccam::bench {
namespace {

constexpr int kFrames = 20;

Quantity allocationsOfFrames(const Picture& picture) {
    LiveSession session(picture);
    session.start();
    AllocationCount count;
    session.waitForFrames(kFrames);
    double unwanted = 0;
    for (const Allocation& allocation : count.take()) {
        unwanted += isAllowed(allocation) ? 0.0 : static_cast<double>(allocation.times);
    }
    return {unwanted, 0, ""};
}

// The process's private memory in use, in millions of bytes. The buffers shared with the camera do
// not count.
double ownMemory() {
    malloc_trim(0);
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("RssAnon:")) {
            double kilobytes = 0;
            std::istringstream(line.substr(8)) >> kilobytes;
            return kilobytes * 1024 / 1e6;
        }
    }
    throw std::runtime_error("the system does not tell the memory in use");
}

// In frames of three bytes per pixel. Two bytes per pixel each: copies of two raw frames, the
// current and the next; libavcodec's copy of one without stuffed bytes; and its two decoded
// pictures, as it decodes into one while the other may still be read. Then the frame and the turned
// frame.
constexpr double kImagesNeeded = 5 * 2.0 / 3 + 2;

// While alive, large blocks come from the system and return there at once, so that freed memory
// does not count.
class FreshMemory {
  public:
    FreshMemory() { mallopt(M_MMAP_THRESHOLD, 1 << 20); }

    ~FreshMemory() { mallopt(M_MMAP_THRESHOLD, 32 << 20); } // the maximum it adapts to by itself

    FreshMemory(const FreshMemory&) = delete;
    FreshMemory& operator=(const FreshMemory&) = delete;
};

Quantity sessionMemory(const Picture& picture) {
    const FreshMemory fresh;
    // After one session everything exists that the camera and the libraries keep.
    std::make_unique<LiveSession>(picture).reset();
    const double before = ownMemory();
    const LiveSession session(picture);
    return {ownMemory() - before, kImagesNeeded * kWidth * kHeight * 3 / 1e6, "MB"};
}

const Entry allocations({.name = "heap allocations of 20 frames",
                         .peer = "none but codec's and image headers",
                         .bound = 0,
                         .quantity = allocationsOfFrames});

const Entry memory({.name = "memory of a session",
                    .peer = "5 1/3 frames, as the design needs",
                    .bound = 1.05,
                    .quantity = sessionMemory});

} // namespace
} // namespace doccam::bench
