// libavcodec and libswscale called in the plainest way, as the reference for the decoder.
#pragma once

#include "jpeg_samples.h"

#include <opencv2/core/types.hpp>

namespace doccam::test {

// Decodes jpeg, crops it to its top-left part of size cut unless that is empty, and scales it to
// size in one piece with a scaler from sws_getContext; red first.
cv::Mat plainlyScaled(const Bytes& jpeg, cv::Size size, cv::Size cut = {});

} // namespace doccam::test
