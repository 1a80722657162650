#include "preview/linear_scaler.h"

#include "base/pixel.h"
#include "base/shared_work.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace doccam {
namespace {

constexpr float kWhole = 2048;

// Source pixels per target pixel, in both directions.
cv::Point2d ratioOf(cv::Size source, cv::Size target) {
    return {1.0 / (static_cast<double>(target.width) / source.width),
            1.0 / (static_cast<double>(target.height) / source.height)};
}

bool isTwo(double ratio) {
    return std::abs(ratio - 2) < std::numeric_limits<double>::epsilon();
}

std::int16_t shareOf(float part) {
    return cv::saturate_cast<std::int16_t>(part * kWhole);
}

// At half size every pixel is the mean of four, halves rounded up.
void halveRow(const uchar* upper, const uchar* lower, int width, uchar* target) {
    constexpr std::ptrdiff_t kPair = std::ptrdiff_t{2} * kChannels;
    for (int x = 0; x < width; ++x, upper += kPair, lower += kPair) {
        for (int i = 0; i < kChannels; ++i) {
            const int sum = upper[i] + upper[i + kChannels] + lower[i] + lower[i + kChannels];
            *target++ = static_cast<uchar>((sum + 2) >> 2);
        }
    }
}

void halve(const cv::Mat& source, cv::Mat& target) {
    forEachRow(target.rows, [&](int y) {
        halveRow(source.ptr(2 * y), source.ptr(2 * y + 1), target.cols, target.ptr(y));
    });
}

// Rows in 128ths of a level; weights in 2048ths. Each product is truncated separately.
void mixRows(const std::int16_t* upper, std::int16_t upperShare, const std::int16_t* lower,
             std::int16_t lowerShare, int count, uchar* target) {
    for (int i = 0; i < count; ++i) {
        const int sum = ((upper[i] * upperShare) >> 16) + ((lower[i] * lowerShare) >> 16);
        target[i] = static_cast<uchar>((sum + 2) >> 2);
    }
}

} // namespace

// Keeps the last two scaled source rows, as the next target row often needs one of them again.
class LinearScaler::Strip {
  public:
    using Columns = std::vector<LinearTap>;

    Strip(const cv::Mat& source, const Columns& columns, std::int16_t* memory)
      : source_(source)
      , columns_(columns)
      , endOfWideReads_(findEndOfWideReads())
      , upper_{memory, kNone}
      , lower_{memory + kChannels * columns.size(), kNone} {}

    void fill(const LinearTap& rows, uchar* target) {
        if (lower_.number == rows.first) {
            std::swap(upper_, lower_);
        }
        scaleAlong(rows.first, upper_);
        scaleAlong(rows.second, lower_);
        mixRows(upper_.samples, rows.firstShare, lower_.samples, rows.secondShare,
                kChannels * static_cast<int>(columns_.size()), target);
    }

  private:
    static constexpr int kNone = -1;
    static constexpr int kWideRead = kChannels + 8;

    struct Row {
        std::int16_t* samples;
        int number; // row in the source
    };

    void scaleAlong(int number, Row& row) const {
        if (row.number == number) {
            return;
        }
        row.number = number;
        const uchar* const source = source_.ptr(number);
        std::int16_t* next = row.samples;
        auto column = columns_.begin();
        for (; column != endOfWideReads_; ++column, next += kChannels) {
            mixAtOnce(source + std::ptrdiff_t{kChannels} * column->first, *column, next);
        }
        for (; column != columns_.end(); ++column) {
            const uchar* const first = source + std::ptrdiff_t{kChannels} * column->first;
            const uchar* const second = source + std::ptrdiff_t{kChannels} * column->second;
            for (int i = 0; i < kChannels; ++i) {
                *next++ = mixture(first[i], second[i], *column);
            }
        }
    }

    static std::int16_t mixture(int first, int second, const LinearTap& shares) {
        return static_cast<std::int16_t>(
            (first * shares.firstShare + second * shares.secondShare) >> 4);
    }

    // Mixes a pixel and the next. Reads kWideRead bytes, writes four samples, the fourth scratch.
    static void mixAtOnce(const uchar* pixels, const LinearTap& shares, std::int16_t* target) {
#ifdef __SSE2__
        const __m128i first = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixels));
        const __m128i second =
            _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pixels + kChannels));
        const __m128i pairs =
            _mm_unpacklo_epi8(_mm_unpacklo_epi8(first, second), _mm_setzero_si128());
        const __m128i shareOfBoth = _mm_unpacklo_epi16(_mm_set1_epi16(shares.firstShare),
                                                       _mm_set1_epi16(shares.secondShare));
        const __m128i sums = _mm_srai_epi32(_mm_madd_epi16(pairs, shareOfBoth), 4);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(target), _mm_packs_epi32(sums, sums));
#else
        for (int i = 0; i < kChannels; ++i) {
            target[i] = mixture(pixels[i], pixels[i + kChannels], shares);
        }
#endif
    }

    // The first column whose wide read would pass the row's end. The next column overwrites the
    // scratch sample.
    Columns::const_iterator findEndOfWideReads() const {
        return std::find_if(
            columns_.begin(), std::prev(columns_.end()), [&](const LinearTap& column) {
                return kChannels * column.first + kWideRead > kChannels * source_.cols;
            });
    }

    const cv::Mat& source_;
    const Columns& columns_;
    Columns::const_iterator endOfWideReads_; // before which mixAtOnce() may be called
    Row upper_, lower_;
};

bool LinearScaler::canScale(const cv::Mat& source, const cv::Mat& target) {
    return source.type() == CV_8UC3 && target.type() == CV_8UC3;
}

// Past the source, a row repeats its last pixel; vertically the weights are kept.
void LinearScaler::prepare(cv::Size source, cv::Size target) {
    if (source == source_ && target == target_) {
        return;
    }
    source_ = target_ = {}; // invalid if an allocation throws
    const cv::Point2d ratio = ratioOf(source, target);
    const auto tapAt = [](int at, double step, int length, bool keepsShares) -> LinearTap {
        const auto place = static_cast<float>((at + 0.5) * step - 0.5);
        const auto first = static_cast<int>(std::floor(place));
        const bool between = keepsShares || (first >= 0 && first < length - 1);
        const float share = between ? place - std::floor(place) : 0;
        return {std::clamp(first, 0, length - 1), std::clamp(first + 1, 0, length - 1),
                shareOf(1.0F - share), shareOf(share)};
    };
    columns_.clear();
    for (int x = 0; x < target.width; ++x) {
        columns_.push_back(tapAt(x, ratio.x, source.width, false));
    }
    rows_.clear();
    for (int y = 0; y < target.height; ++y) {
        rows_.push_back(tapAt(y, ratio.y, source.height, true));
    }
    memory_.resize(std::size_t{2} * Strips::kMaximum * kChannels * columns_.size());
    source_ = source;
    target_ = target;
}

void LinearScaler::scale(const cv::Mat& source, cv::Mat& target) {
    CV_Assert(canScale(source, target) && !source.empty() && !target.empty());
    const cv::Point2d ratio = ratioOf(source.size(), target.size());
    if (source.size() == target.size()) {
        source.copyTo(target);
    } else if (isTwo(ratio.x) && isTwo(ratio.y)) {
        halve(source, target);
    } else {
        prepare(source.size(), target.size());
        const std::size_t ofStrip = std::size_t{2} * kChannels * columns_.size();
        forEachStrip(Strips(target.rows), [&](cv::Range part, int number) {
            Strip strip(source, columns_, &memory_[static_cast<std::size_t>(number) * ofStrip]);
            for (int y = part.start; y < part.end; ++y) {
                strip.fill(rows_[static_cast<std::size_t>(y)], target.ptr(y));
            }
        });
    }
}

} // namespace doccam
