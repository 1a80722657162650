// The still that shows the sheet alone, straight.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::record {

struct Settings;
struct Sheet;

} // namespace doccam::record

namespace doccam {

// The sheet whose corners were found last, cut out of the red-first frame and straightened, as a
// page with blue first, prepared as the settings say. Shares no pixels with the frame, but moves
// the corners into it. Throws cv::Exception when the corners give no region of the frame. Streaming
// thread.
cv::Mat pageOfSheet(const cv::Mat& frame, record::Sheet& kept, const record::Settings& settings);

} // namespace doccam
