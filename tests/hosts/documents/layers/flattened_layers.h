// Layers as a viewer shows them, and drawn pages as a camera sees them.
#pragma once

#include "documents/layers/layers.h"
#include "scene/pages/printed_page.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>

namespace doccam::test {

inline constexpr double kPageDpi = 240;

// The print of kPageDpi, a little blurred and noisy.
cv::Mat photographed(const virtualcam::PrintedPage& print);

// The layers laid over each other, at that size.
cv::Mat flattened(const host::Layers& layers, cv::Size size);

// What the layers take in a file.
std::size_t bytesOf(const host::Layers& layers);

} // namespace doccam::test
