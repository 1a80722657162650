// The sheet cut out of a frame and turned upright.
#pragma once

#include "docimage/turn/turned_picture.h"
#include "output/still/crop_geometry.h"

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam {

// Of frames of the camera's type only the page's pixels are rendered; for other types the whole
// sheet is turned at once. The pixels are the same.
class StraightSheet {
  public:
    // box must lie in the red-first frame with black borders around it; otherwise throws
    // cv::Exception, as for clockwise degrees that are not finite.
    StraightSheet(const cv::Mat& frame, const BorderAmounts& borders, const cv::Rect& box,
                  float degrees);

    // The size of the picture that holds the whole turned box.
    cv::Size size() const;

    // The part at place, with a border of 8 pixels around it, blue first. Throws cv::Exception if
    // place leaves the picture.
    cv::Mat cut(const cv::Rect& place) const;

  private:
    cv::Mat render(const cv::Rect& place) const;
    cv::Mat copy(const cv::Rect& place) const;

    std::optional<TurnedPicture> rendered_;
    cv::Mat turned_;
};

} // namespace doccam
