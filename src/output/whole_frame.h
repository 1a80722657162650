// The still that shows the whole frame.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

// Saves the red-first frame at path, prepared as the settings say, and prints its progress. Leaves
// the frame's pixels alone. Streaming thread.
void saveWholeFrame(char* path, const cv::Mat& frame);

} // namespace doccam
