// Sheets that do not lie flat, as seen from straight above.
#pragma once

#include <opencv2/core.hpp>

namespace doccam::test {

// Around a can whose visible part spans that many degrees, upright or lying, in the light of one
// lamp.
cv::Mat aroundCan(const cv::Mat& sheet, double span, bool upright, cv::RNG& random);

// Crumpled: points move by about that many pixels, and the slopes are lit unevenly.
cv::Mat crumpled(const cv::Mat& sheet, double pixels, cv::RNG& random);

} // namespace doccam::test
