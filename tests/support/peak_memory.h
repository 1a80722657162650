// How much memory the process takes at its peak.
#pragma once

namespace doccam::test {

// Begins with what the process holds now, whatever it has held before.
class PeakMemory {
  public:
    PeakMemory();

    // How much more it has held since, in kilobytes.
    long growth() const;

  private:
    long before_;
};

} // namespace doccam::test
