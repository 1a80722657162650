// A picture turned by any angle, of which parts can be rendered.
#pragma once

#include "docimage/turn/rotation_kernels.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam {

// What is turned: a rectangle of size, of which pixels shows a part and the rest is black.
struct TurnedRegion {
    cv::Mat pixels;
    cv::Point place; // of the pixels in the region
    cv::Size size;
};

// The region turned about its centre on a canvas that holds it whole, with black around it: the
// same pixels as OpenCV's bilinear ones.
class TurnedPicture {
  public:
    // Whether a region with such pixels can be rendered: 8-bit with three channels, not empty, and
    // with sides of at most 16384 pixels.
    static bool canRender(const TurnedRegion& region);

    // Clockwise. region can be rendered; its pixels are shared. Throws cv::Exception for an angle
    // that is no number.
    TurnedPicture(const TurnedRegion& region, float degrees);

    // Of the canvas.
    cv::Size size() const { return canvas_; }

    // Renders what lies in part of the canvas, and within it, into target, which has part's size
    // and the pixels' type.
    void render(const cv::Rect& part, cv::Mat& target, SampleOrder order) const;

  private:
    struct Place;

    Place placeOf(int x, int y) const;
    bool hasFullNeighbourhood(Place place) const;
    cv::Range columnsWithNeighbourhood(const cv::Rect& part, int y) const;
    void renderRow(const cv::Rect& part, int y, SampleOrder order, uchar* row) const;
    void renderPixel(Place place, SampleOrder order, uchar* pixel) const;

    cv::Mat source_;
    cv::Size canvas_;
    cv::Matx23d map_;                // from the canvas to the source
    cv::Point start_;                // the source's beginning in the region, and rounding
    std::vector<int> across_, down_; // by column of the canvas, from the row's first place
};

} // namespace doccam
