// A file descriptor with one owner.
#pragma once

#include <unistd.h>

#include <atomic>

namespace doccam {

// Closes its descriptor when replaced or destroyed, by one thread at a time. Any thread may read.
class UniqueFd {
  public:
    static constexpr int kNone = -1;

    UniqueFd() = default;

    explicit UniqueFd(int descriptor)
      : descriptor_(descriptor) {}

    ~UniqueFd() { reset(); }

    UniqueFd(UniqueFd&& other) noexcept
      : descriptor_(other.release()) {}

    UniqueFd& operator=(UniqueFd&& other) noexcept {
        reset(other.release());
        return *this;
    }

    // Takes ownership of descriptor.
    void reset(int descriptor = kNone) {
        if (const int last = descriptor_.exchange(descriptor); last != kNone) {
            close(last);
        }
    }

    // Gives up ownership of the descriptor that it returns.
    int release() { return descriptor_.exchange(kNone); }

    int get() const { return descriptor_; }

    bool isOpen() const { return get() != kNone; }

  private:
    std::atomic<int> descriptor_{kNone};
};

} // namespace doccam
