#include "base/parallel_copy.h"

#include "base/shared_work.h"

#include <algorithm>

namespace doccam {

void copyInParallel(std::span<const unsigned char> from, unsigned char* target) {
    // Smaller pieces are copied before another thread has woken up.
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    const auto pieces = static_cast<int>((from.size() + kPiece - 1) / kPiece);
    shareWork(pieces, [&](const cv::Range& range) {
        const std::size_t first = kPiece * static_cast<std::size_t>(range.start);
        const std::size_t end = std::min(kPiece * static_cast<std::size_t>(range.end), from.size());
        std::copy_n(from.data() + first, end - first, target + first);
    });
}

} // namespace doccam
