// Whether a saved page is straight, the right way up, and still carries its text.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::test {

// The page turned back by that many quarters clockwise, as 8-bit grey.
cv::Mat turnedBack(const cv::Mat& page, int quarters);

// The correlation, -1 to 1, of the page with the flat sheet stretched over it but for the border.
double likeness(const cv::Mat& greyPage, const cv::Mat& flatSheet, int border);

// By how many degrees the lines of text of an upright page are off the level, searched within two
// degrees to either side.
double lineTilt(const cv::Mat& greyPage);

} // namespace doccam::test
