// Counts what the program takes from the heap, and says who took it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace doccam::bench {

// What one place in the code took while it was counted.
struct Allocation {
    std::string module; // file name of the program or shared library that asked
    std::string place;  // the nearest exported function there, as the linker spells it, or empty
    std::size_t times = 0;
    std::size_t bytes = 0;
};

// Counts the allocations of all threads from its construction on. One at a time.
class AllocationCount {
  public:
    AllocationCount();
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    // Ends the counting. The largest first.
    std::vector<Allocation> take();
};

// True for what a frame may take: the codec's own memory, the headers of images, and whatever the
// camera that stands in for a real one takes.
bool isAllowed(const Allocation& allocation);

} // namespace doccam::bench
