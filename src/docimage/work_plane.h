// One-channel work pictures as the cleaning steps share them.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstddef>

namespace doccam {

// 8-bit and one channel; each row is followed by 0 to 3 padding bytes that are always 0, which
// makes the step from row to row a multiple of four. All 0 at first. A copy shares the memory.
class WorkPlane {
  public:
    // Throws cv::Exception when memory is short.
    explicit WorkPlane(cv::Size size);

    cv::Size size() const { return rows_.size(); }

    // The true rows, as a view of this plane's memory. Not to be reallocated.
    cv::Mat& rows() { return rows_; }

    const cv::Mat& rows() const { return rows_; }

    // The byte that a reader takes for (x, y) who steps from row to row by the width: where the
    // rows have padding, the picture leans and the padding is part of it.
    uchar unpaddedAt(int x, int y) const {
        return memory_.data[static_cast<std::size_t>(y) * static_cast<std::size_t>(rows_.cols) +
                            static_cast<std::size_t>(x)];
    }

  private:
    cv::Mat memory_;
    cv::Mat rows_;
};

} // namespace doccam
