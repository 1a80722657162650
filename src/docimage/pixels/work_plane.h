// One-channel work pictures as the cleaning steps share them.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstddef>

namespace doccam {

// 8-bit and one channel; each row is followed by 0 to 3 padding bytes that are 0, which
// makes the step from row to row a multiple of four. A copy shares the memory.
class WorkPlane {
  public:
    // All 0. Throws cv::Exception when memory is short.
    explicit WorkPlane(cv::Size size);

    // The same with pixels of no particular value.
    static WorkPlane unset(cv::Size size);

    cv::Size size() const { return rows_.size(); }

    // The true rows, as a view of this plane's memory. Not to be reallocated.
    cv::Mat& rows() { return rows_; }

    const cv::Mat& rows() const { return rows_; }

    // The bytes that a reader takes for row y who steps from row to row by the width: where the
    // rows have padding, the picture leans and the padding is part of it.
    const uchar* unpaddedRow(int y) const {
        return memory_.data + static_cast<std::size_t>(y) * static_cast<std::size_t>(rows_.cols);
    }

    uchar* unpaddedRow(int y) {
        return memory_.data + static_cast<std::size_t>(y) * static_cast<std::size_t>(rows_.cols);
    }

    // Makes all pixels and all padding 0, whatever was written to unpadded rows.
    void clear() { memory_.setTo(0); }

    uchar unpaddedAt(int x, int y) const { return unpaddedRow(y)[x]; }

  private:
    explicit WorkPlane(const cv::Mat& memory, int width);

    cv::Mat memory_;
    cv::Mat rows_;
};

} // namespace doccam
