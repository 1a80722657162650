// A page in grey, as the searches for its dark margins see it, and how often each level occurs.
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

// As bright as the page is.
PageGrey greyOf(const cv::Mat& page);

// Dark samples lifted first.
PageGrey gammaGrey(const cv::Mat& page);

// Paper and print are one level, so that only the nearly black, lifted, differs from them.
PageGrey nearBlackGrey(const cv::Mat& page);

} // namespace doccam
