// Which pixels of a page are paper rather than print.
#pragma once

#include "docimage/pixels/work_plane.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// 255 where the 8-bit, three-channel page is brighter than its surroundings less a little, 0
// elsewhere. The surroundings of a pixel near the edge go on beyond it as the edge is.
WorkPlane paperOf(const cv::Mat& page);

} // namespace doccam
