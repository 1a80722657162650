// Reads numbers and pieces off the front of a fuzz input. Missing bytes count as zero.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

namespace doccam::test {

class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size)
      : rest_(data, size) {}

    bool empty() const { return rest_.empty(); }

    unsigned byte() {
        const auto piece = take(1);
        return piece.empty() ? 0 : piece[0];
    }

    unsigned word() {
        const unsigned low = byte();
        return low | byte() << 8;
    }

    // Any 32-bit number.
    int number() {
        const unsigned low = word();
        return static_cast<int>(low | word() << 16);
    }

    // 1 to limit, from two bytes.
    int side(int limit) { return 1 + static_cast<int>(word()) % limit; }

    // The next count bytes, or as many as are left.
    std::span<const unsigned char> take(std::size_t count) {
        const auto piece = rest_.first(std::min(count, rest_.size()));
        rest_ = rest_.subspan(piece.size());
        return piece;
    }

    std::span<const unsigned char> takeRest() { return take(rest_.size()); }

  private:
    std::span<const unsigned char> rest_;
};

} // namespace doccam::test
