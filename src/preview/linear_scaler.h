// Scaling pictures.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstdint>
#include <vector>

namespace doccam {

// Computes the same pixels as OpenCV's bilinear resize, reusing its memory. Not thread-safe.
class LinearScaler {
  public:
    // Whether pictures of these types can be scaled: 8-bit with three channels.
    static bool canScale(const cv::Mat& source, const cv::Mat& target);

    // Scales source to target's size. They must not overlap. Throws cv::Exception if one is empty.
    void scale(const cv::Mat& source, cv::Mat& target);

  private:
    // The weights of two neighbouring source pixels in one direction, in 2048ths.
    struct LinearTap {
        int first = 0;
        int second = 0;
        std::int16_t firstShare = 0;
        std::int16_t secondShare = 0;
    };

    class Strip;

    void prepare(cv::Size source, cv::Size target);

    cv::Size source_, target_; // sizes that the taps are for
    std::vector<LinearTap> columns_, rows_;
    std::vector<std::int16_t> memory_; // two rows for each strip
};

} // namespace doccam
