// Dividing a page by its light.
#pragma once

#include "page/paper/illumination.h"

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// The 8-bit page as it would look in even light; on paper, noise near white turns white, and ink
// darker.
cv::Mat evened(const cv::Mat& page, const Illumination& illumination);

} // namespace doccam::page
