// The isochronous endpoint: splits frames into the packets that the host requests.
#pragma once

#include "device/frame_source.h"
#include "vm/camera/usbip.h"

#include <chrono>
#include <deque>
#include <optional>

namespace doccam::vm {

// For use by one thread.
class VideoStream {
  public:
    using Clock = std::chrono::steady_clock;

    explicit VideoStream(virtualcam::FrameSource& frames)
      : frames_(frames) {}

    // Starts with a frame due at once, then one per interval.
    void start(std::uint32_t pixelFormat, virtualcam::Size size, std::chrono::nanoseconds interval);
    void stop();

    // Stops and drops all pending requests.
    void reset();

    void submit(const Request& request, std::vector<Packet> packets);

    // Drops a pending request; false if there is none of that number.
    bool unlink(std::uint32_t sequence);

    // The time until a pending request can be answered; none while none is pending.
    std::optional<Clock::duration> untilDue() const;

    // The reply to the oldest request, which must be due. Packets past a frame's end stay empty.
    Bytes answer();

  private:
    struct Transfer {
        Request request;
        std::vector<Packet> packets;
    };

    void beginFrame();
    void fill(Packet& packet, Bytes& data);

    virtualcam::FrameSource& frames_;
    std::deque<Transfer> waiting_;
    bool running_ = false;
    std::uint32_t pixelFormat_ = 0;
    virtualcam::Size size_;
    Clock::duration interval_{};
    Clock::time_point due_;
    std::uint32_t number_ = 0;
    virtualcam::FrameBytes frame_; // the one being sent, null between frames
    std::size_t sent_ = 0;
};

} // namespace doccam::vm
