// Resampling a picture in perspective.
#pragma once

#include <opencv2/core.hpp>

namespace doccam::page {

// A picture of that size and of picture's type, 8-bit with one channel or three: each pixel is
// interpolated between the four of picture around the place to which toPicture maps it, white
// outside. Places are exact to a hundredth of a pixel.
cv::Mat warped(const cv::Mat& picture, const cv::Matx33d& toPicture, cv::Size size);

} // namespace doccam::page
