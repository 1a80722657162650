#include "preload/handle.h"

#include "device/metadata_device.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/timerfd.h>

#include <cerrno>
#include <utility>

namespace doccam::virtualcam {

Handle::Handle(ClientId client, std::shared_ptr<CaptureDevice> device, Identity identity, int node,
               bool metadata)
  : client_(client)
  , device_(std::move(device))
  , identity_(std::move(identity))
  , node_(node)
  , metadata_(metadata) {}

Handle::~Handle() {
    if (!metadata_) {
        device_->detach(client_);
    }
}

int Handle::createDescriptor(int openFlags) {
    const int flags = ((openFlags & O_CLOEXEC) != 0 ? TFD_CLOEXEC : 0) |
                      ((openFlags & O_NONBLOCK) != 0 ? TFD_NONBLOCK : 0);
    const int descriptor = timerfd_create(CLOCK_MONOTONIC, flags);
    if (descriptor >= 0) {
        addDescriptor(descriptor);
        if (!metadata_) {
            device_->attach(client_, [this](auto ready) { announce(ready); });
        }
    }
    return descriptor;
}

void Handle::addDescriptor(int descriptor) {
    const std::lock_guard lock(mutex_);
    descriptors_.insert(descriptor);
}

void Handle::dropDescriptor(int descriptor) {
    const std::lock_guard lock(mutex_);
    descriptors_.erase(descriptor);
}

int Handle::request(std::uint32_t request, void* argument, bool nonBlocking) {
    if (!metadata_) {
        return device_->request(client_, request, argument, nonBlocking);
    }
    if (device_->unplugged()) {
        return ENODEV;
    }
    return argument == nullptr ? EFAULT : answerMetadataNode(identity_, request, argument);
}

short Handle::pollErrors() const {
    if (metadata_) {
        return device_->unplugged() ? POLLERR | POLLHUP : POLLERR;
    }
    return device_->pollErrors();
}

// The descriptor is a timerfd that expires when the frame is due.
void Handle::announce(std::optional<CaptureDevice::Time> ready) {
    itimerspec timer{};
    if (ready) {
        const auto since = ready->time_since_epoch();
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(since);
        timer.it_value.tv_sec = seconds.count();
        timer.it_value.tv_nsec = std::chrono::nanoseconds(since - seconds).count();
        if (since.count() <= 0) {
            timer.it_value = {0, 1};
        }
    }
    const std::lock_guard lock(mutex_);
    if (!descriptors_.empty()) {
        timerfd_settime(*descriptors_.begin(), TFD_TIMER_ABSTIME, &timer, nullptr);
    }
}

} // namespace doccam::virtualcam
