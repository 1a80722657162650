// The still that shows the whole frame.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam {

struct LibraryState;

// The red-first frame as a page with blue first, prepared as the settings say; prints its progress.
// Shares no pixels with the frame. Streaming thread.
cv::Mat pageOfWholeFrame(const cv::Mat& frame, const LibraryState& library);

} // namespace doccam
