#include "docimage/clean/paper.h"

#include "base/shared_work.h"
#include "docimage/clean/page_kernels.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdint>
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

} // namespace

WorkPlane paperOf(const cv::Mat& page) {
    cv::Mat grey;
    cv::cvtColor(page, grey, cv::COLOR_RGB2GRAY);
    WorkPlane paper = WorkPlane(page.size());
    forEachStrip(Strips(page.rows),
                 [&](cv::Range part, int /*number*/) { markPaper(grey, part, paper.rows()); });
    return paper;
}

} // namespace doccam
