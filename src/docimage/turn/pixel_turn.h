// Turning pictures of three-byte pixels in one pass over the memory.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

enum class Quarter { kClockwise, kCounterClockwise };

// Whether the functions below accept image: two-dimensional, three-byte pixels, not empty.
bool canTurn(const cv::Mat& image);

// Writes source turned by a quarter to turned, which must have source's sides swapped and share no
// memory with it.
void turnQuarter(const cv::Mat& source, Quarter quarter, cv::Mat& turned);

// Turns the image by half a turn in place.
void turnHalf(cv::Mat& image);

} // namespace doccam
