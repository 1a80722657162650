// A coarse grid of values, read row by row at a page's resolution.
#include "page/paper/stretched_grid.h"

#include <opencv2/core/hal/intrin.hpp>

#include <algorithm>
#include <bit>
#include <cstddef>

namespace doccam::page {

namespace {

constexpr int kVector = 4;

// The pixels between the centres of two neighbouring cells; before the first centre and past the
// last, both are the same cell.
struct Gap {
    int begin;
    int end;
    int before;
    int after;
};

Gap gapOf(int number, int scale, int width, int cells) {
    const int half = scale / 2; // 0 for cells of one pixel, whose centres are the pixels' own
    const int begin = number == 0 ? 0 : std::min((number - 1) * scale + half, width);
    const int end = number == cells ? width : std::min(number * scale + half, width);
    return {begin, end, std::max(number - 1, 0), std::min(number, cells - 1)};
}

} // namespace

StretchedGrid::StretchedGrid(const cv::Mat& grid, int scale, int width, int channels)
  : grid_(grid)
  , scale_(scale)
  , shift_(static_cast<int>(std::bit_width(static_cast<unsigned>(scale))))
  , width_(width)
  , channels_(channels) {
    for (auto& row : rows_) {
        // Whole vectors are stored, past the end of the row.
        row.resize(std::size_t{1} * width * channels + kVector);
    }
}

GridRow StretchedGrid::row(int y) {
    const int position = std::max(2 * y + 1 - scale_, 0);
    const int above = std::min(position >> shift_, grid_.rows - 1);
    const int below = std::min(above + 1, grid_.rows - 1);
    const int weight = (position & (2 * scale_ - 1)) << (16 - shift_);
    return {stretched(above), stretched(below), static_cast<std::uint16_t>(weight)};
}

const std::uint16_t* StretchedGrid::stretched(int gridRow) {
    auto& row = rows_[gridRow % 2];
    if (held_[gridRow % 2] != gridRow) {
        stretch(grid_.ptr<std::uint16_t>(gridRow), row.data());
        held_[gridRow % 2] = gridRow;
    }
    return row.data();
}

// Four samples at once: a pixel and one too many, which the next pixel overwrites.
void StretchedGrid::stretch(const std::uint16_t* from, std::uint16_t* to) const {
    const int own = grid_.channels();
    const auto load = [&](int cell) {
        const auto* values = from + std::ptrdiff_t{cell} * own;
        const int last = own - 1;
        return cv::v_int32x4(values[0], values[std::min(1, last)], values[std::min(2, last)], 0);
    };
    for (int number = 0; number <= grid_.cols; ++number) {
        const Gap gap = gapOf(number, scale_, width_, grid_.cols);
        const cv::v_int32x4 before = load(gap.before);
        const cv::v_int32x4 step = load(gap.after) - before;
        int weight = scale_ == 1 ? 0 : 1;
        cv::v_int32x4 way = weight == 0 ? cv::v_setzero_s32() : step;
        for (int x = gap.begin; x < gap.end; ++x, weight += 2) {
            cv::v_pack_u_store(to + std::ptrdiff_t{x} * channels_, before + (way >> shift_));
            way += step + step;
        }
    }
}

} // namespace doccam::page
