#include "docimage/clean/background.h"

#include "base/shared_work.h"
#include "docimage/clean/black_edge.h"
#include "docimage/clean/page_kernels.h"
#include "docimage/pixels/work_plane.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace doccam {
namespace {

constexpr int kReach = kSurroundings / 2;

// For each column the sum of the samples within kReach rows of a row.
class ColumnSums {
  public:
    ColumnSums(const cv::Mat& grey, int row)
      : grey_(grey)
      , row_(row)
      , sums_(static_cast<std::size_t>(grey.cols)) {
        for (int y = row - kReach; y <= row + kReach; ++y) {
            add(rowNear(y));
        }
    }

    void moveDown() {
        subtract(rowNear(row_ - kReach));
        ++row_;
        add(rowNear(row_ + kReach));
    }

    const std::vector<std::uint16_t>& sums() const { return sums_; }

  private:
    const uchar* rowNear(int y) const { return grey_.ptr(std::clamp(y, 0, grey_.rows - 1)); }

    void add(const uchar* row) {
        for (std::size_t x = 0; x < sums_.size(); ++x) {
            sums_[x] = static_cast<std::uint16_t>(sums_[x] + row[x]);
        }
    }

    void subtract(const uchar* row) {
        for (std::size_t x = 0; x < sums_.size(); ++x) {
            sums_[x] = static_cast<std::uint16_t>(sums_[x] - row[x]);
        }
    }

    const cv::Mat& grey_;
    int row_;
    std::vector<std::uint16_t> sums_; // each of at most 179 bytes
};

// Prefix sums over the columns, starting kReach columns before the first.
void sumUp(const std::vector<std::uint16_t>& columns, std::vector<std::uint32_t>& sums) {
    auto next = sums.begin();
    std::uint32_t sum = 0; // may wrap around: only differences count
    const auto append = [&](std::uint32_t column) {
        *next++ = sum;
        sum += column;
    };
    for (int i = 0; i < kReach; ++i) {
        append(columns.front());
    }
    for (const std::uint16_t column : columns) {
        append(column);
    }
    for (int i = 0; i <= kReach; ++i) {
        append(columns.back());
    }
}

void markPaper(const cv::Mat& grey, cv::Range part, cv::Mat& paper) {
    ColumnSums columns(grey, part.start);
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(grey.cols + kSurroundings));
    for (int y = part.start; y < part.end; ++y) {
        sumUp(columns.sums(), sums);
        widestKernels<allPageKernels>().markPaper(grey.ptr(y), sums.data(), grey.cols,
                                                  paper.ptr(y));
        columns.moveDown();
    }
}

using PixelRow = std::vector<uchar>;

// Past the edge rows are mirrored: that of the page, or of the larger picture that it is part of.
PixelRow copyOfRow(const cv::Mat& page, int y) {
    cv::Size whole;
    cv::Point corner;
    page.locateROI(whole, corner);
    const std::ptrdiff_t row =
        cv::borderInterpolate(corner.y + y, whole.height, cv::BORDER_REFLECT_101) - corner.y;
    const uchar* const first = page.data + row * static_cast<std::ptrdiff_t>(page.step);
    return {first, first + static_cast<std::size_t>(page.cols) * page.elemSize()};
}

// Combines both planes with the page's own pixels, row by row.
void whitenRows(cv::Mat& page, cv::Range part, const WorkPlane& paper, const WorkPlane& margins,
                PixelRow above, const PixelRow& below) {
    PixelRow row = above;
    for (int y = part.start; y < part.end; ++y) {
        std::copy_n(page.ptr(y), row.size(), row.begin());
        widestKernels<allPageKernels>().whitenPaper(
            {
                .above = above.data(),
                .row = row.data(),
                .below = y + 1 < part.end ? page.ptr(y + 1) : below.data(),
                .margin = margins.unpaddedRow(y),
                .paper = paper.unpaddedRow(y),
                .count = page.cols,
            },
            page.ptr(y));
        std::swap(above, row);
    }
}

} // namespace

WorkPlane paperOf(const cv::Mat& page) {
    cv::Mat grey;
    cv::cvtColor(page, grey, cv::COLOR_RGB2GRAY);
    WorkPlane paper(page.size());
    forEachStrip(Strips(page.rows),
                 [&](cv::Range part, int /*number*/) { markPaper(grey, part, paper.rows()); });
    return paper;
}

void whitenBackground(cv::Mat page) {
    const WorkPlane paper = paperOf(page);
    const WorkPlane margins = marginMask(page);
    const Strips strips(page.rows);
    // The rows just outside each strip, copied since strips are processed in place.
    std::vector<PixelRow> above, below;
    for (int number = 0; number < strips.count; ++number) {
        const cv::Range part = strips.part(number);
        above.push_back(copyOfRow(page, part.start - 1));
        below.push_back(copyOfRow(page, part.end));
    }
    forEachStrip(strips, [&](cv::Range part, int number) {
        const auto strip = static_cast<std::size_t>(number);
        whitenRows(page, part, paper, margins, above[strip], below[strip]);
    });
}

} // namespace doccam
