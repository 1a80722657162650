#include "base/parallel_copy.h"

#include <opencv2/core/utility.hpp>

#include <algorithm>

namespace doccam {
namespace {

// Less is copied before another thread has woken up.
constexpr std::size_t kPiece = std::size_t{1} << 20;

class Pieces : public cv::ParallelLoopBody {
  public:
    Pieces(std::span<const unsigned char> from, unsigned char* target)
      : from_(from)
      , target_(target) {}

    cv::Range all() const { return {0, static_cast<int>((from_.size() + kPiece - 1) / kPiece)}; }

    void operator()(const cv::Range& range) const override {
        const std::size_t first = kPiece * static_cast<std::size_t>(range.start);
        const std::size_t end =
            std::min(kPiece * static_cast<std::size_t>(range.end), from_.size());
        std::copy_n(from_.data() + first, end - first, target_ + first);
    }

  private:
    std::span<const unsigned char> from_;
    unsigned char* target_;
};

} // namespace

void copyInParallel(std::span<const unsigned char> from, unsigned char* target) {
    const Pieces pieces(from, target);
    cv::parallel_for_(pieces.all(), pieces);
}

} // namespace doccam
