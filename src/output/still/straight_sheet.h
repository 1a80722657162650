// The sheet cut out of a frame and turned upright.
#pragma once

#include "docimage/turn/turned_picture.h"
#include "output/still/crop_geometry.h"

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam {

// Frames of the camera's kind are rendered only where a page is cut out; of other kinds the whole
// sheet is turned at once. The pixels are the same.
class StraightSheet {
  public:
    // box lies in the red-first frame with black borders around it. Throws cv::Exception when it
    // does not, and for degrees, clockwise, that are no number.
    StraightSheet(const cv::Mat& frame, const BorderAmounts& borders, const cv::Rect& box,
                  float degrees);

    // Of the picture that holds the whole turned box.
    cv::Size size() const;

    // What lies at place, and a border of 8 pixels around it, with blue first. Throws cv::Exception
    // for a place that leaves the picture.
    cv::Mat cut(const cv::Rect& place) const;

  private:
    cv::Mat render(const cv::Rect& place) const;
    cv::Mat copy(const cv::Rect& place) const;

    std::optional<TurnedPicture> rendered_;
    cv::Mat turned_;
};

} // namespace doccam
