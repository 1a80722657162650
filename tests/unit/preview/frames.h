// Frames for the preview's tests, and the rendering rule written plainly.
#pragma once

#include "preview_fixture.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::test {

// A frame in which neighbouring pixels differ and no two regions look alike.
cv::Mat noisyFrame(FrameSize size, int seed = 1);

// The picture of frame that fields describe, through a scratch image and a copy byte by byte.
// Throws cv::Exception when the cut reaches outside frame.
std::vector<unsigned char> plainPicture(const cv::Mat& frame, const PreviewFields& fields);

} // namespace doccam::test
