// A drawn sheet with lines of text and a red mark, flat or lying on a desk.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::test {

// White, with dark lines of text and a red square at the top left. Red first.
cv::Mat flatSheet(cv::Size size);

// The sheet turned clockwise by degrees in the middle of a dark frame, with a little noise. Red
// first.
cv::Mat sheetOnDesk(const cv::Mat& flat, double degrees, cv::Size frame);

// The clockwise tilt of the longest line of text in degrees, -90 to 90. Here and below, the page is
// blue first, as read from a file.
double leanOfText(const cv::Mat& page);

// The red mark's position, as fractions of the page's width and height.
cv::Point2d placeOfMark(const cv::Mat& page);

// The mean difference in grey levels between the flat sheet and the best-matching part of page,
// which must be centred within a few pixels.
double differenceFrom(const cv::Mat& flat, const cv::Mat& page);

} // namespace doccam::test
