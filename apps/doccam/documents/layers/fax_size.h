// What a mask takes as CCITT G4.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstddef>

namespace doccam::host {

// The bytes that the mask, 8-bit and not 0 where black, takes encoded.
std::size_t faxSize(const cv::Mat& mask);

} // namespace doccam::host
