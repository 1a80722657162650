// Turning a picture by any angle, as a whole or in parts.
#pragma once

#include "docimage/turn/rotation_kernels.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam {

// The picture turned clockwise by degrees about its centre, on a black canvas that holds all of it.
// Throws cv::Exception for an angle that is not finite, and for types that cv::warpAffine rejects.
cv::Mat rotated(const cv::Mat& picture, float degrees);

// The canvas for a picture turned by radians. Throws cv::Exception for an impossible size.
cv::Size canvasSize(cv::Size picture, double radians);

// The single-precision map that turns a picture counter-clockwise onto the canvas's centre.
cv::Mat turnOnto(cv::Size canvas, cv::Size picture, double degrees);

// The region to turn: a black rectangle of size with pixels at place.
struct TurnedRegion {
    cv::Mat pixels;
    cv::Point place; // of the pixels in the region
    cv::Size size;
};

// The region turned about its centre on a black canvas, with the pixels of OpenCV's bilinear warp.
class TurnedPicture {
  public:
    // Whether region's pixels are 8-bit with three channels, not empty, and no side over 16384.
    static bool canRender(const TurnedRegion& region);

    // Turns the renderable region clockwise; shares its pixels. Throws as rotated() does.
    TurnedPicture(const TurnedRegion& region, float degrees);

    // The canvas's size.
    cv::Size size() const { return canvas_; }

    // Renders part of the canvas into target, which must have part's size and the pixels' type.
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
    cv::Point start_;                // the source's origin in the region, plus rounding
    std::vector<int> across_, down_; // offsets from the row's first position, by canvas column
};

} // namespace doccam
