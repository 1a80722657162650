// The codec and scaler libraries called in the plainest way, as the yardstick for the decoder.
#pragma once

#include "jpeg_samples.h"

#include <opencv2/core/types.hpp>

namespace doccam::test {

// The picture of jpeg, cut to the top-left part of size cut if that is not empty, scaled to
// size in one piece by a scaler from sws_getContext; red first.
cv::Mat plainlyScaled(const Bytes& jpeg, cv::Size size, cv::Size cut = {});

} // namespace doccam::test
