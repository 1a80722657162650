// The process's peak memory.
#pragma once

namespace doccam::test {

// Measures from the present size, whatever the earlier peak.
class PeakMemory {
  public:
    PeakMemory();

    // The peak above the starting size, in kilobytes.
    long growth() const;

  private:
    long before_;
};

} // namespace doccam::test
