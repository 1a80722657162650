// Turning pictures of three-byte pixels, each in one pass over the memory.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

enum class Quarter { kClockwise, kCounterClockwise };

// Whether the functions below take image: two dimensions, pixels of three bytes, at least one.
bool canTurn(const cv::Mat& image);

// Writes source, turned, to turned, which is as high as source is wide and the other way round, and
// shares no memory with it.
void turnQuarter(const cv::Mat& source, Quarter quarter, cv::Mat& turned);

// Turns the image by half where it is.
void turnHalf(cv::Mat& image);

} // namespace doccam
