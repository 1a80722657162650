// Printed pages, and how a camera sees them.
#pragma once

#include <opencv2/core.hpp>

namespace doccam::page {

inline const cv::Scalar kWhite = cv::Scalar::all(255);
inline const cv::Scalar kBlack = cv::Scalar::all(0);
inline const cv::Scalar kWarm(0.7, 0.8, 0.9);

// Blank print with lines of text.
cv::Mat printedPage(int type = CV_8UC3, cv::Size size = {900, 1200});

// The page under a light that falls off from left to right by three, in a colour, and noise.
cv::Mat lit(const cv::Mat& print, const cv::Scalar& colour, double darkest = 1.0 / 3);

cv::Scalar meanIn(const cv::Mat& picture, const cv::Rect& box);

void expectNear(const cv::Scalar& colour, const cv::Scalar& wanted, double tolerance,
                int channels = 3);

// The print's pixels which differ from the look by more than tolerance, where print is not.
int different(const cv::Mat& look, const cv::Mat& print, int tolerance);

// A photograph: soft shapes of many tones.
cv::Mat photograph(cv::Size size);

// A card with rounded corners on a dark desk.
cv::Mat card(const cv::Scalar& ground);

} // namespace doccam::page
