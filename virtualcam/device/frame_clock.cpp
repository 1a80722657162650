#include "device/frame_clock.h"

#include <algorithm>

namespace doccam::virtualcam {

void FrameClock::start(Time now, Interval interval) {
    interval_ = interval;
    due_ = now + interval;
    number_ = 0;
    delivered_ = 0;
}

void FrameClock::setInterval(Time now, Interval interval) {
    interval_ = interval;
    due_ = std::min(due_, now + interval);
}

void FrameClock::skipMissed(Time now, std::size_t freeBuffers) {
    if (interval_ <= Interval::zero() || now <= due_) {
        return;
    }
    const auto late = static_cast<std::uint64_t>((now - due_) / interval_);
    if (late > freeBuffers) {
        const std::uint64_t missed = late - freeBuffers;
        number_ += static_cast<std::uint32_t>(missed);
        due_ += interval_ * missed;
    }
}

void FrameClock::advance(Time now) {
    ++number_;
    ++delivered_;
    due_ = interval_ <= Interval::zero() ? now : due_ + interval_;
}

} // namespace doccam::virtualcam
