#include "docimage/turn/quarter_turn.h"

#include "base/pixel.h"
#include "base/shared_work.h"
#include "docimage/pixels/pixel_tiles.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <iterator>

namespace doccam {
namespace {

// The picture is turned in blocks, whose source and target stay in the cache.
constexpr int kBlockRows = 512;
constexpr int kBlockColumns = 128;
constexpr int kCacheLine = 64;

// How cv::flip mirrors.
constexpr int kUpsideDown = 0;
constexpr int kLeftRight = 1;

// Prefetched while tiles are turned: the hardware prefetcher cannot predict this stride.
constexpr int kRowsPerFetch = kBlockRows * kTile / kBlockColumns;

// Copies count pixels that are step bytes apart to adjacent ones.
void gather(Rows source, unsigned char* target, int count) {
    for (; count > 0; --count, source.first += source.step, target += kPixelBytes) {
        std::memcpy(target, source.first, kPixelBytes);
    }
}

// A row of the turned picture is a column of the source, read upwards or downwards.
class BlockTurner {
  public:
    BlockTurner(const cv::Mat& source, Quarter quarter, cv::Mat& turned)
      : clockwise_(quarter == Quarter::kClockwise)
      , columnsInTiles_(haveTiles() ? source.cols - kTileReads / int{kPixelBytes} : 0)
      , source_(source)
      , turned_(turned) {}

    // A band is kBlockColumns columns of the source.
    int bands() const { return (source_.cols + kBlockColumns - 1) / kBlockColumns; }

    void turn(const cv::Range& range) const {
        const int end = std::min(range.end * kBlockColumns, source_.cols);
        for (int column = range.start * kBlockColumns; column < end; column += kBlockColumns) {
            for (int row = 0; row < source_.rows; row += kBlockRows) {
                turnBlock({column, std::min(column + kBlockColumns, end)}, row);
            }
        }
    }

  private:
    // Rows are counted in the order in which they are turned.
    Rows sourceFrom(int column, int row) const {
        const auto step = static_cast<std::ptrdiff_t>(source_.step);
        return clockwise_ ? Rows{source_.ptr(source_.rows - 1 - row, column), -step}
                          : Rows{source_.ptr(row, column), step};
    }

    WritableRows targetFrom(int column, int row) const {
        const auto step = static_cast<std::ptrdiff_t>(turned_.step);
        return clockwise_ ? WritableRows{turned_.ptr(column, row), step}
                          : WritableRows{turned_.ptr(source_.cols - 1 - column, row), -step};
    }

    // Prefetches some rows of the next block for reading.
    void fetchRows(int column, int row) const {
        for (const int end = std::min(row + kRowsPerFetch, source_.rows); row < end; ++row) {
            const unsigned char* const pixels = sourceFrom(column, row).first;
            for (int offset = 0; offset < kBlockColumns * kPixelBytes; offset += kCacheLine) {
                __builtin_prefetch(pixels + offset);
            }
        }
    }

    // Prefetches a column of tiles' target for writing.
    void fetchTarget(cv::Range columns, int row, int count) const {
        for (int column = columns.start; column < columns.end; ++column) {
            const unsigned char* const pixels = targetFrom(column, row).first;
            for (int offset = 0; offset < count * kPixelBytes; offset += kCacheLine) {
                __builtin_prefetch(pixels + offset, 1);
            }
        }
    }

    void turnBlock(cv::Range columns, int row) const {
        const int count = std::min(kBlockRows, source_.rows - row);
        const int inTiles = count / kTile * kTile;
        int column = columns.start;
        for (; column + kTile <= std::min(columns.end, columnsInTiles_); column += kTile) {
            const int next = column + kTile;
            fetchRows(columns.start,
                      row + kBlockRows + (column - columns.start) / kTile * kRowsPerFetch);
            fetchTarget({next, std::min(next + kTile, columns.end)}, row, count);
            turnTiles(sourceFrom(column, row), targetFrom(column, row), inTiles / kTile);
            gatherColumns({column, next}, row + inTiles, count - inTiles);
        }
        gatherColumns({column, columns.end}, row, count);
    }

    void gatherColumns(cv::Range columns, int row, int count) const {
        for (int column = columns.start; count > 0 && column < columns.end; ++column) {
            gather(sourceFrom(column, row), targetFrom(column, row).first, count);
        }
    }

    bool clockwise_;
    int columnsInTiles_; // with enough pixels to their right for the tiles' wide reads
    const cv::Mat& source_;
    cv::Mat& turned_;
};

void exchangeRows(cv::Mat& image, const cv::Range& pairs) {
    for (int row = pairs.start; row < pairs.end; ++row) {
        auto* const upper = image.ptr<cv::Vec3b>(row);
        auto* const lower = image.ptr<cv::Vec3b>(image.rows - 1 - row);
        std::swap_ranges(upper, upper + image.cols, std::make_reverse_iterator(lower + image.cols));
    }
}

// Whether image has the pixels of frames: two-dimensional, three bytes each, not empty.
bool isFrame(const cv::Mat& image) {
    return image.dims == 2 && image.type() == CV_8UC3 && !image.empty();
}

bool shareMemory(const cv::Mat& left, const cv::Mat& right) {
    const std::less<> before;
    return before(left.datastart, right.dataend) && before(right.datastart, left.dataend);
}

} // namespace

void turnIntoFrame(const cv::Mat& source, Quarter quarter, cv::Mat& turned) {
    if (turned.empty()) {
        return;
    }
    if (isFrame(source)) {
        turned.create(source.cols, source.rows, source.type());
        if (!shareMemory(source, turned)) {
            const BlockTurner turner(source, quarter, turned);
            shareWork(turner.bands(), [&](const cv::Range& bands) { turner.turn(bands); });
            return;
        }
    }
    cv::transpose(source, turned);
    cv::flip(turned, turned, quarter == Quarter::kClockwise ? kLeftRight : kUpsideDown);
}

void turnByHalf(cv::Mat& image) {
    if (!isFrame(image)) {
        cv::flip(image, image, kUpsideDown);
        cv::flip(image, image, kLeftRight);
        return;
    }
    shareWork(image.rows / 2, [&](const cv::Range& pairs) { exchangeRows(image, pairs); });
    if (image.rows % 2 != 0) {
        auto* const middle = image.ptr<cv::Vec3b>(image.rows / 2);
        std::reverse(middle, middle + image.cols);
    }
}

} // namespace doccam
