#include "docimage/work_plane.h"

#include <opencv2/core.hpp>

namespace doccam {
namespace {

constexpr int kRowUnit = 4;

int paddedWidth(int width) {
    return (width + kRowUnit - 1) / kRowUnit * kRowUnit;
}

} // namespace

// A header of its own rather than a part of the memory's picture: filters look beyond such a part.
WorkPlane::WorkPlane(cv::Size size)
  : memory_(size.height, paddedWidth(size.width), CV_8UC1, cv::Scalar(0))
  , rows_(size.height, size.width, CV_8UC1, memory_.data, memory_.step) {}

} // namespace doccam
