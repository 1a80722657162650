// Turning the live frame by quarters.
#pragma once

#include "docimage/turn/pixel_turn.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// Turns source into turned, whose memory is reused from frame to frame; does nothing while turned
// is empty. Images of any type. Throws cv::Exception like cv::transpose.
void turnIntoFrame(const cv::Mat& source, Quarter quarter, cv::Mat& turned);

// Turns the image by half a turn in place.
void turnByHalf(cv::Mat& image);

} // namespace doccam
