// The kernel's virtual USB host controller, to which a program plugs in a device.
#pragma once

#include <unistd.h>

#include <utility>

namespace doccam::vm {

// A descriptor that is closed at the end.
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

// Connects a high-speed device to the first free port and returns the device's end of the line, on
// which the host speaks USB/IP. Shutting the line down is pulling the plug. Throws
// std::runtime_error where no port is free or the kernel refuses.
OwnedDescriptor connectDevice();

} // namespace doccam::vm
