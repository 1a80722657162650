// The isochronous endpoint: cuts frames into the packets that the host asks for.
#pragma once

#include "device/frame_source.h"
#include "vm/camera/usbip.h"

#include <chrono>
#include <deque>
#include <optional>

namespace doccam::vm {

// Used by one thread.
class VideoStream {
  public:
    using Clock = std::chrono::steady_clock;

    explicit VideoStream(virtualcam::FrameSource& frames)
      : frames_(frames) {}

    // Starts with a new frame, due at once; then one each interval.
    void start(std::uint32_t pixelFormat, virtualcam::Size size, std::chrono::nanoseconds interval);
    void stop();

    // Stops, and forgets all waiting requests.
    void reset();

    void submit(const Request& request, std::vector<Packet> packets);

    // Forgets a waiting request; false where there is none of that number.
    bool unlink(std::uint32_t sequence);

    // How long until a waiting request can be answered; none while nothing is to be answered.
    std::optional<Clock::duration> untilDue() const;

    // The reply to the oldest request, which is due. The packets behind a frame's end stay empty.
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
    virtualcam::FrameBytes frame_; // the one being sent, null between two
    std::size_t sent_ = 0;
};

} // namespace doccam::vm
