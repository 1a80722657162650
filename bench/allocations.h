// Counts heap allocations by caller.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace doccam::bench {

// The allocations made at one place in the code while counting.
struct Allocation {
    std::string module; // file name of the program or shared library
    std::string place;  // the exported function, mangled, or the offset
    std::size_t times = 0;
    std::size_t bytes = 0;
};

// Counts the allocations of all threads from construction on. At most one at a time.
class AllocationCount {
  public:
    AllocationCount();
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    // Stops counting. Returns the largest first.
    std::vector<Allocation> take();
};

// True for what a frame may allocate: libavcodec's own memory, the headers of images, and the
// virtual camera's memory.
bool isAllowed(const Allocation& allocation);

} // namespace doccam::bench
