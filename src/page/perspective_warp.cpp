#include "page/perspective_warp.h"

#include "base/shared_work.h"
#include "page/warp_kernels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace doccam::page {
namespace {

constexpr unsigned char kWhite = 255;

// Keeps far places, as of a sheet seen on edge, within the range of integers.
std::int64_t fixed(double value) {
    constexpr double kLimit = 1 << 20;
    return std::llround(std::clamp(value, -kLimit, kLimit) * (1 << kPlaceBits));
}

WarpPlace placeAt(const cv::Matx33d& map, double x, double y) {
    const double w = map(2, 0) * x + map(2, 1) * y + map(2, 2);
    return {fixed((map(0, 0) * x + map(0, 1) * y + map(0, 2)) / w),
            fixed((map(1, 0) * x + map(1, 1) * y + map(1, 2)) / w)};
}

template <int kChannels>
class Warp {
  public:
    Warp(const cv::Mat& picture, const cv::Matx33d& map, cv::Mat& target)
      : picture_(picture)
      , map_(map)
      , target_(target) {}

    void operator()(const cv::Range& rows) const {
        const int count = target_.cols / kWarpRun;
        std::vector<WarpPlace> places(static_cast<std::size_t>(count) + 1);
        for (int y = rows.start; y < rows.end; ++y) {
            for (int number = 0; number <= count; ++number) {
                places[static_cast<std::size_t>(number)] = placeAt(map_, number * kWarpRun, y);
            }
            row(places, target_.ptr(y));
            rest(places.back(), y);
        }
    }

  private:
    // Between two places a run is straight and even to some thousandths of a pixel.
    void row(const std::vector<WarpPlace>& places, unsigned char* to) const {
        const auto inside = [&](const WarpPlace& place) { return isInside(place, kRightMargin); };
        auto start = places.begin();
        while (places.end() - start > 1) {
            const auto end = std::find_if_not(start, places.end(), inside);
            const auto runs = std::max<std::ptrdiff_t>(end - start - 1, 1);
            unsigned char* const at = to + (start - places.begin()) * kWarpRun * kChannels;
            if (end - start > 1) {
                quick({picture_.data, static_cast<std::ptrdiff_t>(picture_.step[0]), &*start,
                       static_cast<int>(runs)},
                      at);
            } else {
                run(start[0], stepBetween(start[0], start[1]), kWarpRun, at);
            }
            start += runs;
        }
    }

    void quick(const WarpRuns& runs, unsigned char* to) const {
        constexpr auto kKernel = kChannels == 1 ? &WarpKernels::greyRuns : &WarpKernels::colourRuns;
        (widestKernels<allWarpKernels>().*kKernel)(runs, to);
    }

    // What follows the last whole run.
    void rest(const WarpPlace& start, int y) const {
        const int x = target_.cols / kWarpRun * kWarpRun;
        run(start, stepBetween(start, placeAt(map_, x + kWarpRun, y)), target_.cols - x,
            target_.ptr(y) + std::ptrdiff_t{x} * kChannels);
    }

    void run(WarpPlace place, const WarpPlace& step, int count, unsigned char* to) const {
        for (; count > 0; --count, place.x += step.x, place.y += step.y, to += kChannels) {
            isInside(place, 1) ? pixel(place, to) : nearBorder(place, to);
        }
    }

    // Whether so many columns and a row follow the place.
    bool isInside(const WarpPlace& place, int columns) const {
        return place.x >= 0 && place.y >= 0 && place.x >> kPlaceBits < picture_.cols - columns &&
               place.y >> kPlaceBits < picture_.rows - 1;
    }

    void pixel(const WarpPlace& place, unsigned char* to) const {
        const unsigned char* const top = picture_.ptr(static_cast<int>(place.y >> kPlaceBits)) +
                                         (place.x >> kPlaceBits) * kChannels;
        const unsigned char* const bottom = top + picture_.step[0];
        for (int c = 0; c < kChannels; ++c) {
            to[c] = blended(top[c], top[c + kChannels], bottom[c], bottom[c + kChannels],
                            weightOf(place.x), weightOf(place.y));
        }
    }

    // The outermost pixels reach half a pixel beyond their centres.
    void nearBorder(const WarpPlace& place, unsigned char* to) const {
        constexpr int kHalf = 1 << (kPlaceBits - 1);
        const auto column = (place.x + kHalf) >> kPlaceBits;
        const auto row = (place.y + kHalf) >> kPlaceBits;
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
    if (picture.channels() == 1) {
        shareWork(size.height, Warp<1>(picture, toPicture, target));
    } else {
        shareWork(size.height, Warp<3>(picture, toPicture, target));
    }
    return target;
}

} // namespace doccam::page
