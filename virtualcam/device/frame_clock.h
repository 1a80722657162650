// When the frames of a stream are due.
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

    // Takes effect after the frame that is due next, or at once when that would be late.
    void setInterval(Time now, Interval interval);

    Time due() const { return due_; }

    // The number of the frame that is due, from 0.
    std::uint32_t number() const { return number_; }

    // How many frames have been delivered; missed ones do not count.
    std::uint32_t delivered() const { return delivered_; }

    // Passes over frames for which no buffer was free, of which there were freeBuffers.
    void skipMissed(Time now, std::size_t freeBuffers);

    // The due frame was delivered.
    void advance(Time now);

  private:
    Time due_;
    Interval interval_{0};
    std::uint32_t number_ = 0;
    std::uint32_t delivered_ = 0;
};

} // namespace doccam::virtualcam
