#include "docimage/pixels/work_plane.h"

#include <opencv2/core.hpp>

namespace doccam {

// The rows are a separate header, not a submatrix: OpenCV's filters read beyond a submatrix.
WorkPlane::WorkPlane(cv::Size size)
  : memory_(size.height, (size.width + kRowUnit - 1) / kRowUnit * kRowUnit, CV_8UC1)
  , rows_(size, CV_8UC1, memory_.data, memory_.step) {
    memory_.colRange(size.width, memory_.cols).setTo(0);
}

} // namespace doccam
