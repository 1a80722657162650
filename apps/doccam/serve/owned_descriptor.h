// A file descriptor closed by its owner's destructor.
#pragma once

#include <unistd.h>

#include <utility>

namespace doccam::serve {

class OwnedDescriptor {
  public:
    OwnedDescriptor() = default;

    explicit OwnedDescriptor(int descriptor)
      : descriptor_(descriptor) {}

    ~OwnedDescriptor() { reset(); }

    OwnedDescriptor(OwnedDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}

    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }

    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;

    explicit operator bool() const { return descriptor_ >= 0; }

    int get() const { return descriptor_; }

    void reset() {
        if (descriptor_ >= 0) {
            close(std::exchange(descriptor_, -1));
        }
    }

  private:
    int descriptor_ = -1;
};

} // namespace doccam::serve
