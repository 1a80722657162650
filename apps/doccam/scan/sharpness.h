// How sharp a frame is.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::host {

// The mean curvature of the green of an 8-bit, three-channel frame, in some of its rows, relative
// to its mean level: larger for the sharper of two frames of the same scene, whatever the light.
double sharpnessOf(const cv::Mat& frame);

} // namespace doccam::host
