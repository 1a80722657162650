#include "camera/frame_feed.h"

#include <doccam/doccam.h>

#include <sys/eventfd.h>

#include <utility>

namespace doccam::host {

// Never destroyed: the library may still call it at process exit.
FrameFeed& FrameFeed::instance() {
    static FrameFeed& feed = *new FrameFeed;
    return feed;
}

FrameFeed::FrameFeed()
  : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    SetDataCallback(onFrame);
    SetFaultCallback(onFault);
}

void FrameFeed::listen(Listener listener) {
    const std::lock_guard lock(listening_);
    listener_ = std::move(listener);
}

std::uint64_t FrameFeed::frames() const {
    const std::lock_guard lock(mutex_);
    return frames_;
}

std::optional<std::string> FrameFeed::ended() const {
    const std::lock_guard lock(mutex_);
    return ended_;
}

std::optional<StillFault> FrameFeed::takeStillFault() {
    const std::lock_guard lock(mutex_);
    return std::exchange(stillFault_, std::nullopt);
}

void FrameFeed::acknowledge() const {
    eventfd_t count = 0;
    eventfd_read(descriptor_, &count);
}

void FrameFeed::restart() {
    const std::lock_guard lock(mutex_);
    frames_ = 0;
    ended_.reset();
    stillFault_.reset();
}

void FrameFeed::onFrame(unsigned char* pixels, int width, int height) {
    FrameFeed& feed = instance();
    {
        const std::lock_guard lock(feed.listening_);
        if (feed.listener_) {
            feed.listener_(pixels, width, height);
        }
    }
    {
        const std::lock_guard lock(feed.mutex_);
        ++feed.frames_;
    }
    eventfd_write(feed.descriptor_, 1);
}

void FrameFeed::onFault(int fault, const char* message) {
    FrameFeed& feed = instance();
    {
        const std::lock_guard lock(feed.mutex_);
        if (fault == DOCCAM_FAULT_STREAM_ENDED) {
            feed.ended_ = message;
        } else if (fault == DOCCAM_FAULT_STILL) {
            feed.stillFault_ = {doccam_fault_cause(), message};
        }
    }
    eventfd_write(feed.descriptor_, 1);
}

} // namespace doccam::host
