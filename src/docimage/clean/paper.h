// Separating paper from print.
#pragma once

#include "docimage/pixels/work_plane.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// 255 where the page is brighter than its surroundings less a constant, 0 elsewhere. The edge's
// pixels are replicated past it.
WorkPlane paperOf(const cv::Mat& page);

} // namespace doccam
