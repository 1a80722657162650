#include "page/perspective_warp.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace doccam::page {
namespace {

constexpr int kFractionBits = 16;
constexpr int kWeightBits = 7;
constexpr int kOne = 1 << kWeightBits;
constexpr unsigned char kWhite = 255;
constexpr int kRun = 16; // pixels between two exact places

struct Place {
    double x;
    double y;
};

Place placeAt(const cv::Matx33d& map, double x, double y) {
    const double w = map(2, 0) * x + map(2, 1) * y + map(2, 2);
    return {(map(0, 0) * x + map(0, 1) * y + map(0, 2)) / w,
            (map(1, 0) * x + map(1, 1) * y + map(1, 2)) / w};
}

// Keeps far places, as of a sheet seen on edge, within the range of integers.
std::int64_t fixed(double value) {
    constexpr double kLimit = 1 << 20;
    return std::llround(std::clamp(value, -kLimit, kLimit) * (1 << kFractionBits));
}

// Interpolates one pixel inside of the picture; weights of 7 bits keep sums in 31.
template <int kChannels>
void interpolate(const unsigned char* from, std::size_t stride, int right, int down,
                 unsigned char* to) {
    const unsigned char* const below = from + stride;
    for (int c = 0; c < kChannels; ++c) {
        const int top = from[c] * (kOne - right) + from[c + kChannels] * right;
        const int bottom = below[c] * (kOne - right) + below[c + kChannels] * right;
        to[c] = static_cast<unsigned char>(
            (top * (kOne - down) + bottom * down + (1 << (2 * kWeightBits - 1))) >>
            (2 * kWeightBits));
    }
}

template <int kChannels>
class Warp {
  public:
    Warp(const cv::Mat& picture, const cv::Matx33d& map, cv::Mat& target)
      : picture_(picture)
      , map_(map)
      , target_(target) {}

    void operator()(const cv::Range& rows) const {
        for (int y = rows.start; y < rows.end; ++y) {
            Place next = placeAt(map_, 0, y);
            for (int x = 0; x < target_.cols; x += kRun) {
                const Place start = next;
                const int count = std::min(kRun, target_.cols - x);
                next = placeAt(map_, x + count, y);
                run(start, next, count, target_.ptr(y) + std::ptrdiff_t{x} * kChannels);
            }
        }
    }

  private:
    // Between two places a run is straight and even to some thousandths of a pixel.
    void run(Place start, Place end, int count, unsigned char* to) const {
        std::int64_t x = fixed(start.x);
        std::int64_t y = fixed(start.y);
        const std::int64_t stepX = (fixed(end.x) - x) / count;
        const std::int64_t stepY = (fixed(end.y) - y) / count;
        const bool inside = isInside(x, y) && isInside(x + stepX * count, y + stepY * count);
        for (int i = 0; i < count; ++i, x += stepX, y += stepY, to += kChannels) {
            if (inside || isInside(x, y)) {
                pixel(x, y, to);
            } else {
                nearBorder(x, y, to);
            }
        }
    }

    bool isInside(std::int64_t x, std::int64_t y) const {
        return x >= 0 && y >= 0 && x >> kFractionBits < picture_.cols - 1 &&
               y >> kFractionBits < picture_.rows - 1;
    }

    void pixel(std::int64_t x, std::int64_t y, unsigned char* to) const {
        constexpr int kDropped = kFractionBits - kWeightBits;
        interpolate<kChannels>(picture_.ptr(static_cast<int>(y >> kFractionBits)) +
                                   (x >> kFractionBits) * kChannels,
                               picture_.step, static_cast<int>(x >> kDropped) & (kOne - 1),
                               static_cast<int>(y >> kDropped) & (kOne - 1), to);
    }

    // The outermost pixels reach half a pixel beyond their centres.
    void nearBorder(std::int64_t x, std::int64_t y, unsigned char* to) const {
        constexpr int kHalf = 1 << (kFractionBits - 1);
        const auto column = (x + kHalf) >> kFractionBits;
        const auto row = (y + kHalf) >> kFractionBits;
        if (column < 0 || row < 0 || column >= picture_.cols || row >= picture_.rows) {
            std::fill_n(to, kChannels, kWhite);
            return;
        }
        std::copy_n(picture_.ptr(static_cast<int>(row)) + column * kChannels, kChannels, to);
    }

    const cv::Mat& picture_;
    const cv::Matx33d& map_;
    cv::Mat& target_;
};

} // namespace

cv::Mat warped(const cv::Mat& picture, const cv::Matx33d& toPicture, cv::Size size) {
    cv::Mat target(size, picture.type());
    const cv::Range rows(0, size.height);
    if (picture.channels() == 1) {
        cv::parallel_for_(rows, Warp<1>(picture, toPicture, target));
    } else {
        cv::parallel_for_(rows, Warp<3>(picture, toPicture, target));
    }
    return target;
}

} // namespace doccam::page
