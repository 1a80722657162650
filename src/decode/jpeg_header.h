// Looks into a JPEG's header without decoding it.
#pragma once

#include <opencv2/core/types.hpp>

#include <optional>
#include <span>

namespace doccam {

// The picture size, in pixels, that the first frame header in data announces; either side may be 0.
// Nothing when there is no such header.
std::optional<cv::Size> announcedSize(std::span<const unsigned char> data);

} // namespace doccam
