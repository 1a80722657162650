#include "base/shared_work.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace doccam::test {
namespace {

TEST(ParallelCopy, CopiesEveryByteAndNoMore) {
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    std::vector<unsigned char> from(5 * kPiece);
    for (std::size_t i = 0; i < from.size(); ++i) {
        from[i] = static_cast<unsigned char>(i * 7 + i / 251);
    }
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, kPiece - 1, kPiece, kPiece + 1,
                                    3 * kPiece + 5, from.size()}) {
        std::vector<unsigned char> target(from.size() + 1, 3);
        copyInParallel({from.data(), count}, target.data());
        const auto end = target.begin() + static_cast<std::ptrdiff_t>(count);
        EXPECT_TRUE(std::equal(target.begin(), end, from.begin())) << count;
        EXPECT_TRUE(std::all_of(end, target.end(), [](unsigned char byte) { return byte == 3; }));
    }
}

} // namespace
} // namespace doccam::test
