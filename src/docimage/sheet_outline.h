// The outline of what is large and bright in a picture.
#pragma once

#include "docimage/work_plane.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// 255 along the outlines, three pixels wide, and 0 elsewhere. The bright regions of the 8-bit,
// three-channel picture are taken from the lowest upward: from the first one that covers more than
// 30000 pixels on, all are outlined, small ones too. Regions end one pixel before the picture's
// edge. Throws cv::Exception for an empty picture.
WorkPlane sheetOutline(const cv::Mat& picture);

} // namespace doccam
