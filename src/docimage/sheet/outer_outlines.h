// The outer outlines of a picture's white regions, point by point.
#pragma once

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>

#include <cstddef>
#include <span>
#include <vector>

namespace doccam {

// The same outlines, points and order of points as OpenCV's external contours without
// approximation. Memory is kept from one search to the next.
class OuterOutlines {
  public:
    // Searches binary, 8-bit with one channel, of 0 and 1; the one-pixel frame must be 0. The
    // pixels of the outlines are renumbered.
    void search(cv::Mat& binary);

    std::size_t count() const { return ends_.size(); }

    bool empty() const { return ends_.empty(); }

    // By the order found: the highest on the picture first. Neighbouring points differ by one step
    // of eight directions, the last one and the first one, too. Valid until the next search.
    std::span<const cv::Point> operator[](std::size_t number) const;

  private:
    void follow(unsigned char* pixel, std::ptrdiff_t step, cv::Point at);

    std::vector<cv::Point> points_; // of all outlines
    std::vector<std::size_t> ends_; // of each outline
};

// The area inside an outline, in pixels, fraction cut off.
int enclosedArea(std::span<const cv::Point> outline);

} // namespace doccam
