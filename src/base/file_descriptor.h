// An owned file descriptor.
#pragma once

#include <utility>

namespace doccam {

class FileDescriptor {
  public:
    FileDescriptor() = default;

    explicit FileDescriptor(int descriptor)
      : descriptor_(descriptor) {}

    FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(other.release()) {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        reset(other.release());
        return *this;
    }

    ~FileDescriptor() { reset(); }

    int get() const { return descriptor_; }

    bool valid() const { return descriptor_ >= 0; }

    // Gives the descriptor up without closing it.
    int release() { return std::exchange(descriptor_, -1); }

    // Closes the descriptor held and takes over another.
    void reset(int descriptor = -1);

  private:
    int descriptor_ = -1;
};

} // namespace doccam
