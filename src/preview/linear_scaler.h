// Scaling pictures one after the other.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <vector>

namespace doccam {

// Makes the same pixels as OpenCV's bilinear resizing. Its memory is kept from one
// picture to the next. One thread.
class LinearScaler {
  public:
    // Whether pictures of such types can be scaled: 8-bit with three channels.
    static bool canScale(const cv::Mat& source, const cv::Mat& target);

    // Fills target, whose size counts. Both can be scaled and do not overlap. Throws cv::Exception
    // when one of them is empty.
    void scale(const cv::Mat& source, cv::Mat& target);

  private:
    // What a place in the target shows of the source, one way: two neighbours, in 2048ths.
    struct LinearTap {
        int first = 0;
        int second = 0;
        std::int16_t firstShare = 0;
        std::int16_t secondShare = 0;
    };

    class Strip;

    void prepare(cv::Size source, cv::Size target);

    cv::Size source_, target_; // that the mixtures are for
    std::vector<LinearTap> columns_, rows_;
    std::vector<std::int16_t> memory_; // two rows for each strip
};

} // namespace doccam
