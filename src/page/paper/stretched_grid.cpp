// A coarse grid of values, read row by row at a page's resolution.
#include "page/paper/stretched_grid.h"

#include <algorithm>
#include <bit>

namespace doccam::page {

StretchedGrid::StretchedGrid(const cv::Mat& grid, int scale, int width, int channels)
  : grid_(grid)
  , scale_(scale)
  , shift_(std::bit_width(static_cast<unsigned>(scale)))
  , channels_(channels)
  , columns_(width) {
    for (int x = 0; x < width; ++x) {
        const int position = std::max(2 * x + 1 - scale, 0);
        const int first = std::min(position >> shift_, grid.cols - 1);
        columns_[x] = {first * grid.channels(),
                       std::min(first + 1, grid.cols - 1) * grid.channels(),
                       position & (2 * scale - 1)};
    }
    for (auto& row : rows_) {
        row.resize(std::size_t{1} * width * channels);
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

void StretchedGrid::stretch(const std::uint16_t* from, std::uint16_t* to) const {
    const int own = grid_.channels() == 1 ? 1 : channels_;
    for (const Column& column : columns_) {
        for (int c = 0; c < own; ++c) {
            const int before = from[column.first + c];
            const int after = from[column.second + c];
            to[c] =
                static_cast<std::uint16_t>(before + (((after - before) * column.weight) >> shift_));
        }
        for (int c = own; c < channels_; ++c) {
            to[c] = to[0];
        }
        to += channels_;
    }
}

} // namespace doccam::page
