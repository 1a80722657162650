// The kernel's virtual USB host controller (vhci), into which a program plugs a device.
#pragma once

#include <unistd.h>

#include <utility>

namespace doccam::vm {

// Closes its descriptor on destruction.
class OwnedDescriptor {
  public:
    explicit OwnedDescriptor(int value = -1)
      : value_(value) {}

    ~OwnedDescriptor() {
        if (value_ >= 0) {
            close(value_);
        }
    }

    OwnedDescriptor(OwnedDescriptor&& other) noexcept
      : value_(std::exchange(other.value_, -1)) {}

    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }

    int get() const { return value_; }

  private:
    int value_;
};

// Connects a high-speed device to the first free port and returns the device's end of the socket,
// on which the host speaks USB/IP. Shutting the socket down unplugs the device. Throws
// std::runtime_error if no port is free or the kernel refuses.
OwnedDescriptor connectDevice();

} // namespace doccam::vm
