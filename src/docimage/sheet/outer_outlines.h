// The outer outlines of a picture's white regions, point by point.
#pragma once

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>

#include <cstddef>
#include <span>
#include <vector>

namespace doccam {

// As OpenCV's external contours without approximation. Reuses its memory from search to search.
class OuterOutlines {
  public:
    // Searches binary, of 0 and 1, whose one-pixel frame must be 0. Relabels the outlines' pixels.
    void search(cv::Mat& binary);

    std::size_t count() const { return ends_.size(); }

    bool empty() const { return ends_.empty(); }

    // In the order found, the highest in the picture first. Neighbouring points, including the last
    // and the first, differ by one step in eight directions. Valid until the next search.
    std::span<const cv::Point> operator[](std::size_t number) const;

  private:
    void follow(unsigned char* pixel, std::ptrdiff_t step, cv::Point at);

    std::vector<cv::Point> points_; // of all outlines
    std::vector<std::size_t> ends_; // end of each outline in points_
};

// The area inside an outline in pixels, truncated.
int enclosedArea(std::span<const cv::Point> outline);

} // namespace doccam
