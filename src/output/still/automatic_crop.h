// The still that shows only the sheet, straightened.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::record {

struct Settings;
struct Sheet;

} // namespace doccam::record

namespace doccam {

// The sheet whose corners were found last, cut out of the red-first frame, straightened and cleaned
// according to settings, as a blue-first page. Does not share the frame's pixels, but moves the
// corners into the frame. Throws cv::Exception if they give no region of the frame. Streaming
// thread.
cv::Mat pageOfSheet(const cv::Mat& frame, record::Sheet& kept, const record::Settings& settings);

} // namespace doccam
