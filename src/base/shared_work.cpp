#include "base/shared_work.h"

namespace doccam {
namespace {

thread_local int coresReserved = 0;

} // namespace

void reserveCores(int count) {
    coresReserved = count;
}

void runShared(int count, const cv::ParallelLoopBody& body) {
    const int threads = cv::getNumThreads() - coresReserved;
    if (threads <= 1) {
        body({0, count});
    } else {
        constexpr double kAsItComes = -1;
        cv::parallel_for_({0, count}, body, coresReserved == 0 ? kAsItComes : threads);
    }
}

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
