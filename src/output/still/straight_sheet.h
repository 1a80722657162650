// The sheet cut out of a frame and turned upright.
#pragma once

#include "docimage/turn/turned_picture.h"
#include "output/still/crop_geometry.h"

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam {

// A blue-first copy of the red-first frame. Throws cv::Exception unless it has 3 or 4 channels.
cv::Mat blueFirst(const cv::Mat& frame);

// Of a camera's frame only the page's pixels are rendered, of others the whole sheet: the same.
class StraightSheet {
  public:
    // Throws cv::Exception unless box lies in the bordered frame and clockwise degrees are finite.
    StraightSheet(const cv::Mat& frame, const BorderAmounts& borders, const cv::Rect& box,
                  float degrees);

    // The size of the picture that holds the whole turned box.
    cv::Size size() const;

    // The part at place, blue first, with a border of 8 pixels. Throws cv::Exception outside.
    cv::Mat cut(const cv::Rect& place) const;

  private:
    cv::Mat render(const cv::Rect& place) const;
    cv::Mat copy(const cv::Rect& place) const;

    std::optional<TurnedPicture> rendered_;
    cv::Mat turned_;
};

} // namespace doccam
