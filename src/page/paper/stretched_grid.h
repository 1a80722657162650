// A coarse grid of values, read row by row at a page's resolution.
#pragma once

#include <opencv2/core/mat.hpp>

#include <array>
#include <cstdint>
#include <vector>

namespace doccam::page {

// A row of the page between two rows of values.
struct GridRow {
    const std::uint16_t* above;
    const std::uint16_t* below;
    std::uint16_t weight; // of below, in parts of 65536
};

// Reads a grid of 16-bit integers, whose cells are scale by scale pixels, scale a
// power of two up to 4096, the first at the page's top left corner; linear between the cells'
// centres. A thread's own: it keeps the two rows last used.
class StretchedGrid {
  public:
    // For rows of width pixels with channels samples each; a grid of one channel serves them all.
    StretchedGrid(const cv::Mat& grid, int scale, int width, int channels);

    // What surrounds the page's row y; valid until the next call. Fastest with y in order.
    GridRow row(int y);

  private:
    const std::uint16_t* stretched(int gridRow);
    void stretch(const std::uint16_t* from, std::uint16_t* to) const;

    cv::Mat grid_;
    int scale_;
    int shift_; // 2 * scale is a power of two
    int width_;
    int channels_;
    std::array<std::vector<std::uint16_t>, 2> rows_; // even and odd rows of the grid
    std::array<int, 2> held_ = {-1, -1};
};

} // namespace doccam::page
