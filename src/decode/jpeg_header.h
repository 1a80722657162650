// Looks into a JPEG's header without decoding it.
#pragma once

#include <opencv2/core/types.hpp>

#include <span>
#include <vector>

namespace doccam {

// The picture sizes, in pixels, that the frame headers in data announce up to the picture's end, in
// their order; damaged data may have several, and either side may be 0.
std::vector<cv::Size> announcedSizes(std::span<const unsigned char> data);

} // namespace doccam
