// The time that may be spent.
#pragma once

#include <algorithm>
#include <chrono>

namespace doccam::codes {

class Deadline {
  public:
    explicit Deadline(double seconds)
      : end_(Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                std::chrono::duration<double>(std::min(seconds, kLongest)))) {}

    bool isOver() const { return Clock::now() >= end_; }

  private:
    using Clock = std::chrono::steady_clock;
    static constexpr double kLongest = 1e6; // seconds that the clock can count

    Clock::time_point end_;
};

} // namespace doccam::codes
