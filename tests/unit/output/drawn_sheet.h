// A drawn sheet of paper with lines of text and a red mark, flat or lying on a desk.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::test {

// White, with dark lines of text and a red square at the upper left. Red first.
cv::Mat flatSheet(cv::Size size);

// The sheet turned clockwise by degrees in the middle of a dark frame, with a little noise. Red
// first.
cv::Mat sheetOnDesk(const cv::Mat& flat, double degrees, cv::Size frame);

// By how many degrees clockwise the longest line of text on the page leans, -90 to 90. The page is
// blue first, as read from a file; so below.
double leanOfText(const cv::Mat& page);

// Where the red mark lies, as fractions of the page's width and height.
cv::Point2d placeOfMark(const cv::Mat& page);

// The mean difference in grey levels between the flat sheet and the part of page that shows it
// best, which must lie in the middle but for a few pixels.
double differenceFrom(const cv::Mat& flat, const cv::Mat& page);

} // namespace doccam::test
