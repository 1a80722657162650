// A page in grey for the searches for its dark margins, and its histogram.
//
// Pages are 8-bit with three channels, the first of which weighs as red.
#pragma once

#include "docimage/pixels/levels.h"
#include "docimage/pixels/work_plane.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

struct PageGrey {
    WorkPlane plane;
    Levels levels{};
};

// The page's own brightness.
PageGrey greyOf(const cv::Mat& page);

// Dark samples are first raised by gamma correction.
PageGrey gammaGrey(const cv::Mat& page);

// Paper and print become one level, from which only gamma-corrected near-black pixels differ.
PageGrey nearBlackGrey(const cv::Mat& page);

} // namespace doccam
