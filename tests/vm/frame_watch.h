// The frames that the library hands to its host.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::vm {

// Registers the callback for frames; once in a process is enough.
void watchFrames();

// Waits for a frame that comes after this call and returns a copy, red first.
cv::Mat nextFrame();

// How many frames came so far.
int framesSeen();

} // namespace doccam::vm
