// The still that shows the sheet alone, straight.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// Saves the sheet whose corners were found last, cut out of the red-first frame and straightened,
// at path, prepared as the settings say. Leaves the frame's pixels alone, but moves the corners
// into the frame. Throws cv::Exception when the corners give no region of the frame. Streaming
// thread.
void saveSheet(char* path, const cv::Mat& frame);

} // namespace doccam
