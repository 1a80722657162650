#include "docimage/pixels/work_plane.h"

#include <opencv2/core.hpp>

namespace doccam {
namespace {

constexpr int kRowUnit = 4;

int paddedWidth(int width) {
    return (width + kRowUnit - 1) / kRowUnit * kRowUnit;
}

} // namespace

// A separate header instead of a submatrix of memory: OpenCV's filters read beyond a submatrix.
WorkPlane::WorkPlane(const cv::Mat& memory, int width)
  : memory_(memory)
  , rows_(memory.rows, width, CV_8UC1, memory_.data, memory_.step) {}

WorkPlane::WorkPlane(cv::Size size)
  : WorkPlane(cv::Mat(size.height, paddedWidth(size.width), CV_8UC1, cv::Scalar(0)), size.width) {}

WorkPlane WorkPlane::unset(cv::Size size) {
    const cv::Mat memory(size.height, paddedWidth(size.width), CV_8UC1);
    memory.colRange(size.width, memory.cols).setTo(0);
    return WorkPlane(memory, size.width);
}

} // namespace doccam
