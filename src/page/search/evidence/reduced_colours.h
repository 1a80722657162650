// A picture's colours, small enough to search.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// The means of factor x factor pixels of an 8-bit picture, grey or blue first, as CV_32FC3:
// lightness, red minus green, and blue minus yellow, all in levels. Paper differs from a desk in
// lightness, or, on a bright desk, in colour.
cv::Mat reducedColours(const cv::Mat& picture, int factor);

} // namespace doccam::page
