// The still that shows the whole frame.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::record {

struct Settings;

} // namespace doccam::record

namespace doccam {

// The red-first frame as a blue-first page, cleaned according to settings and, if enlarge is set,
// enlarged to the largest size. Prints its progress. Does not share the frame's pixels. Streaming
// thread.
cv::Mat pageOfWholeFrame(const cv::Mat& frame, const record::Settings& settings, bool enlarge);

} // namespace doccam
