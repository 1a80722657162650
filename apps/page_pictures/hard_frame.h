// Drawn frames that are hard to make pages of.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::pictures {

// A printed sheet on patterned cloth under a tilted camera, in uneven light and in the shadow of a
// hand; blue first.
cv::Mat hardFrame();

// A sheet of which one side lies outside of the frame, with a lamp's reflection on its print.
cv::Mat frameBeyondLimits();

} // namespace doccam::pictures
