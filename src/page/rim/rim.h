// Filling what a page shows of the desk around it.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// Fills narrow bands, wedges and rounded corners along the borders of an evened page with the
// colour of its ground: what lies outside of the sheet when its corners were taken a little too far
// out, or when it is not flat.
void fillRim(cv::Mat& page, const cv::Scalar& ground);

} // namespace doccam::page
