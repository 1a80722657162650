// One-channel work pictures shared by the cleaning steps.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstddef>

namespace doccam {

// 8-bit, one channel, rows padded with zeros to a multiple of four bytes. A copy shares the memory.
class WorkPlane {
  public:
    // The pixels are uninitialised. Throws cv::Exception if out of memory.
    explicit WorkPlane(cv::Size size);

    cv::Size size() const { return rows_.size(); }

    // The true rows, as a view of this plane's memory. Not to be reallocated.
    cv::Mat& rows() { return rows_; }

    const cv::Mat& rows() const { return rows_; }

    // Row y as read with the width for the stride, skewed and with padding in it.
    uchar* unpaddedRow(int y) const {
        return memory_.data + static_cast<std::size_t>(y) * static_cast<std::size_t>(rows_.cols);
    }

    // Sets all pixels and padding to 0, including what was written to unpadded rows.
    void clear() { memory_.setTo(0); }

  private:
    static constexpr int kRowUnit = 4; // bytes

    cv::Mat memory_;
    cv::Mat rows_;
};

} // namespace doccam
