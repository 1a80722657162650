// The cleaning operations written out step by step on the image library's C interface, as plainly
// as they can be, to compare with.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::test::literal {

// Each takes three channels of 8 bits.
void deleteBlackEdge(cv::Mat& page);
void deleteBlackEdgeByBrightness(cv::Mat& page);
cv::Mat blackEdgeMask(const cv::Mat& page);
void deleteBackcolor(cv::Mat& page);

} // namespace doccam::test::literal
