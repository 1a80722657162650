// Turning the live frame by quarters, in one pass over the memory.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

enum class Quarter { kClockwise, kCounterClockwise };

// Turns source into turned, whose memory is reused, unless turned is empty. Images of any type.
// Throws cv::Exception like cv::transpose.
void turnIntoFrame(const cv::Mat& source, Quarter quarter, cv::Mat& turned);

// Turns the image by half a turn in place.
void turnByHalf(cv::Mat& image);

} // namespace doccam
