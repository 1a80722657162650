#include "support/peak_memory.h"

#include <fstream>
#include <string>

namespace doccam::test {
namespace {

long peakKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    }
    return 0;
}

// Resets the kernel's peak to the present size.
void resetPeak() {
    std::ofstream("/proc/self/clear_refs") << 5;
}

} // namespace

PeakMemory::PeakMemory()
  : before_((resetPeak(), peakKilobytes())) {}

long PeakMemory::growth() const {
    return peakKilobytes() - before_;
}

} // namespace doccam::test
