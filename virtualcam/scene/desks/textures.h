// The ingredients of desks.
#pragma once

#include <opencv2/core.hpp>

namespace doccam::virtualcam {

// CV_32F about 0 with deviation 1, smooth over cells of that many pixels.
cv::Mat smoothNoise(cv::Size pixels, cv::Size2d cell, cv::RNG& random);

// One colour, and with it grain levels up and down where pattern is 1 and -1.
cv::Mat coloured(const cv::Mat& pattern, const cv::Scalar& colour, const cv::Scalar& grain);

cv::Mat drawWood(cv::Size pixels, double pixelsPerMillimetre, cv::RNG& random);
cv::Mat drawCloth(cv::Size pixels, double pixelsPerMillimetre, cv::RNG& random);

} // namespace doccam::virtualcam
