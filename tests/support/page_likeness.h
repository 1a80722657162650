// Measures whether a saved page is straight, upright, and has its text intact.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::test {

// The page, turned quarters times clockwise, turned back, as 8-bit grey.
cv::Mat turnedBack(const cv::Mat& page, int quarters);

// The correlation, -1 to 1, of the page inside its border with the flat sheet stretched to it.
double likeness(const cv::Mat& greyPage, const cv::Mat& flatSheet, int border);

// The tilt of the lines of text of an upright page in degrees, searched within two degrees.
double lineTilt(const cv::Mat& greyPage);

} // namespace doccam::test
