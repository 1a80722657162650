// The still that shows the whole frame.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::record {

struct Settings;

} // namespace doccam::record

namespace doccam {

// The red-first frame as a page with blue first, prepared as the settings say and, if so
// wished, enlarged to the largest size; prints its progress.
// Shares no pixels with the frame. Streaming thread.
cv::Mat pageOfWholeFrame(const cv::Mat& frame, const record::Settings& settings, bool enlarge);

} // namespace doccam
