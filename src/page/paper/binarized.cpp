// Parting a page in black and white.
#include "page/paper/binarized.h"

#include "base/shared_work.h"
#include "page/paper/stretched_grid.h"
#include "page/paper/tone_kernels.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace doccam::page {

namespace {

constexpr unsigned char kWhite = 255;

// The parted rows of a page, of which three neighbours are kept.
class PartedRows {
  public:
    PartedRows(const cv::Mat& grey, const Thresholds& thresholds)
      : grey_(grey)
      , levels_(thresholds.levels, thresholds.scale, grey.cols, 1) {
        rows_.fill(std::vector<unsigned char>(std::size_t{2} + grey.cols, kWhite));
    }

    // Parts row y; white past the page.
    void part(int y) {
        auto& row = rows_[place(y)];
        if (y < 0 || y >= grey_.rows) {
            std::fill(row.begin(), row.end(), kWhite);
            return;
        }
        widestKernels<allToneKernels>().thresholdRow(grey_.ptr<unsigned char>(y), levels_.row(y),
                                                     grey_.cols, row.data() + 1);
    }

    // One of the three rows parted last; a white pixel precedes and follows it.
    const unsigned char* row(int y) const { return rows_[place(y)].data() + 1; }

  private:
    static std::size_t place(int y) { return static_cast<std::size_t>(y + 3) % 3; }

    const cv::Mat& grey_;
    StretchedGrid levels_;
    std::array<std::vector<unsigned char>, 3> rows_;
};

} // namespace

cv::Mat binarized(const cv::Mat& grey, const Thresholds& thresholds) {
    cv::Mat bits(grey.size(), CV_8U);
    forEachStrip(Strips(grey.rows), [&](const cv::Range& rows, int) {
        PartedRows parted(grey, thresholds);
        parted.part(rows.start - 1);
        parted.part(rows.start);
        for (int y = rows.start; y < rows.end; ++y) {
            parted.part(y + 1);
            widestKernels<allToneKernels>().removeSpecks(parted.row(y - 1), parted.row(y),
                                                         parted.row(y + 1), grey.cols,
                                                         bits.ptr<unsigned char>(y));
        }
    });
    return bits;
}

} // namespace doccam::page
