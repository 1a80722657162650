// Filling the unknown parts of a smooth surface.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// The surface, 32-bit floats of any number of channels, with its unknown cells (0 in the 8-bit
// known) filled as a membrane would hang between the known ones. Nothing known: unchanged.
cv::Mat membrane(const cv::Mat& surface, const cv::Mat& known);

} // namespace doccam::page
