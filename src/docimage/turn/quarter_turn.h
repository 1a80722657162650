// Turning the live frame by quarters: pixels only change place.
#pragma once

#include "docimage/turn/pixel_turn.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// Turns source into turned, whose memory is reused from frame to frame; does nothing while turned
// is empty. Images of any type. Throws cv::Exception as cv::transpose does.
void turnIntoFrame(const cv::Mat& source, Quarter quarter, cv::Mat& turned);

// Turns the image by half where it is.
void turnByHalf(cv::Mat& image);

} // namespace doccam
