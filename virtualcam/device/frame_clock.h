// The due times of a stream's frames.
#pragma once

#include <chrono>
#include <cstdint>

namespace doccam::virtualcam {

class FrameClock {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Interval = std::chrono::microseconds;

    // The first frame is due one interval after the start. An interval of zero makes every frame
    // due at once.
    void start(Time now, Interval interval);

    // Takes effect after the next due frame, or at once if that would be late.
    void setInterval(Time now, Interval interval);

    Time due() const { return due_; }

    // The number of the frame that is due, from 0.
    std::uint32_t number() const { return number_; }

    // The number of frames delivered, without missed ones.
    std::uint32_t delivered() const { return delivered_; }

    // Skips the frames beyond the freeBuffers that were available.
    void skipMissed(Time now, std::size_t freeBuffers);

    // Call after delivering the due frame.
    void advance(Time now);

  private:
    Time due_;
    Interval interval_{0};
    std::uint32_t number_ = 0;
    std::uint32_t delivered_ = 0;
};

} // namespace doccam::virtualcam
