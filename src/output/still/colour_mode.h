// Applying the colour mode to a page.
#pragma once

#include <opencv2/core/mat.hpp>

#include <optional>

namespace doccam {

// The blue-first page in a colour mode: 0 unchanged (shares its pixels), 1 grey, 2 black and white.
// None for any other mode. Throws cv::Exception for 1 and 2 unless page has 3 or 4 channels.
std::optional<cv::Mat> pictureInMode(const cv::Mat& page, int colorMode);

} // namespace doccam
