// The sides that one line may give.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace doccam::page {

// Which of the parts of one line, between two others that cross it, may be sides of a sheet.
class SideTable {
  public:
    explicit SideTable(std::size_t lines)
      : words_((lines + 63) / 64)
      , bits_(lines * words_) {}

    void add(std::size_t start, std::size_t end) {
        bits_[start * words_ + end / 64] |= std::uint64_t{1} << end % 64;
        bits_[end * words_ + start / 64] |= std::uint64_t{1} << start % 64;
    }

    bool contains(std::size_t start, std::size_t end) const {
        return (bits_[start * words_ + end / 64] >> end % 64 & 1) != 0;
    }

    // Calls back with each line above least that ends a side from start, here and in other.
    template <typename Callback>
    void forEachCommon(const SideTable& other, std::size_t start, std::size_t least,
                       const Callback& callback) const {
        for (std::size_t word = (least + 1) / 64; word < words_; ++word) {
            const std::size_t place = start * words_ + word;
            for (std::uint64_t bits = bits_[place] & other.bits_[place]; bits != 0;
                 bits &= bits - 1) {
                const std::size_t end =
                    word * 64 + static_cast<std::size_t>(std::countr_zero(bits));
                if (end > least) {
                    callback(end);
                }
            }
        }
    }

  private:
    std::size_t words_;
    std::vector<std::uint64_t> bits_;
};

} // namespace doccam::page
