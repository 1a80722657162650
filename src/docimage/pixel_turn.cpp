#include "docimage/pixel_turn.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace doccam {
namespace {

constexpr std::ptrdiff_t kPixelBytes = 3;

// The turned picture is written in blocks: what a block reads and writes stays in the nearest
// cache while each cache line of it is used several times.
constexpr int kBlockColumns = 64;
constexpr int kBlockRows = 16;

// Copies count pixels that lie step bytes apart to places side by side. With four bytes at once,
// the fourth of which the next pixel overwrites; the last pixel goes alone.
void gather(const uchar* source, std::ptrdiff_t step, uchar* target, int count) {
    for (; count > 1; --count, source += step, target += kPixelBytes) {
        std::uint32_t pixelAndMore;
        std::memcpy(&pixelAndMore, source, sizeof pixelAndMore);
        std::memcpy(target, &pixelAndMore, sizeof pixelAndMore);
    }
    std::memcpy(target, source, kPixelBytes);
}

// The same for pixels with no byte behind them that may be read.
void gatherLast(const uchar* source, std::ptrdiff_t step, uchar* target, int count) {
    for (; count > 0; --count, source += step, target += kPixelBytes) {
        std::memcpy(target, source, kPixelBytes);
    }
}

class BlockTurner : public cv::ParallelLoopBody {
  public:
    BlockTurner(const cv::Mat& source, Quarter quarter, cv::Mat& turned)
      : clockwise_(quarter == Quarter::kClockwise)
      , source_(source)
      , turned_(turned) {}

    cv::Range bands() const { return {0, (turned_.rows + kBlockRows - 1) / kBlockRows}; }

    void operator()(const cv::Range& range) const override {
        const int end = std::min(range.end * kBlockRows, turned_.rows);
        for (int top = range.start * kBlockRows; top < end; top += kBlockRows) {
            for (int left = 0; left < turned_.cols; left += kBlockColumns) {
                fillBlock(top, std::min(top + kBlockRows, end), left);
            }
        }
    }

  private:
    // A row of the turned picture is a column of the source, upwards or downwards.
    void fillBlock(int top, int bottom, int left) const {
        const int count = std::min(kBlockColumns, turned_.cols - left);
        const auto step = static_cast<std::ptrdiff_t>(source_.step);
        for (int row = top; row < bottom; ++row) {
            const int column = clockwise_ ? row : source_.cols - 1 - row;
            const int first = clockwise_ ? source_.rows - 1 - left : left;
            const auto copy = column < source_.cols - 1 ? gather : gatherLast;
            copy(source_.ptr(first, column), clockwise_ ? -step : step, turned_.ptr(row, left),
                 count);
        }
    }

    bool clockwise_;
    const cv::Mat& source_;
    cv::Mat& turned_;
};

// Exchanges rows from the two ends of the image.
class RowExchange : public cv::ParallelLoopBody {
  public:
    explicit RowExchange(cv::Mat& image)
      : image_(image) {}

    cv::Range pairs() const { return {0, image_.rows / 2}; }

    void operator()(const cv::Range& range) const override {
        for (int row = range.start; row < range.end; ++row) {
            auto* const upper = image_.ptr<cv::Vec3b>(row);
            auto* const lower = image_.ptr<cv::Vec3b>(image_.rows - 1 - row);
            std::swap_ranges(upper, upper + image_.cols,
                             std::make_reverse_iterator(lower + image_.cols));
        }
    }

  private:
    cv::Mat& image_;
};

} // namespace

bool canTurn(const cv::Mat& image) {
    return image.dims == 2 && image.type() == CV_8UC3 && !image.empty();
}

void turnQuarter(const cv::Mat& source, Quarter quarter, cv::Mat& turned) {
    CV_Assert(canTurn(source) && turned.type() == source.type());
    CV_Assert(turned.rows == source.cols && turned.cols == source.rows);
    const BlockTurner turner(source, quarter, turned);
    cv::parallel_for_(turner.bands(), turner);
}

void turnHalf(cv::Mat& image) {
    CV_Assert(canTurn(image));
    const RowExchange exchange(image);
    cv::parallel_for_(exchange.pairs(), exchange);
    if (image.rows % 2 != 0) {
        auto* const middle = image.ptr<cv::Vec3b>(image.rows / 2);
        std::reverse(middle, middle + image.cols);
    }
}

} // namespace doccam
