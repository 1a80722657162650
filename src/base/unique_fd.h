// A file descriptor with one owner.
#pragma once

#include <unistd.h>

#include <atomic>

namespace doccam {

// Closes its descriptor when it is replaced or destroyed. One thread at a time may replace it; any
// thread may read its number.
class UniqueFd {
  public:
    static constexpr int kNone = -1;

    UniqueFd() = default;

    ~UniqueFd() { reset(); }

    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;

    // Takes ownership of descriptor.
    void reset(int descriptor = kNone) {
        if (const int last = descriptor_.exchange(descriptor); last != kNone) {
            close(last);
        }
    }

    int get() const { return descriptor_; }

    bool isOpen() const { return get() != kNone; }

  private:
    std::atomic<int> descriptor_{kNone};
};

} // namespace doccam
