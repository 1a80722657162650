// Where a picture is smooth as paper, and where rough as cloth or wood.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// CV_8U: how rough the lightness of the colours (as in Evidence) is around each pixel, in
// sixteenths of a level. A median, so that a stroke of print makes nothing rough.
cv::Mat roughnessOf(const cv::Mat& colour);

} // namespace doccam::page
