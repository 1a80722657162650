// How different colours and pictures look.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::test {

// CIE delta E 2000 of two colours in CIE L*a*b*.
double colourDifference(const cv::Vec3d& a, const cv::Vec3d& b);

// The mean of 8-bit sRGB, blue first, where mask is not 0, in CIE L*a*b*.
cv::Vec3d meanColour(const cv::Mat& picture, const cv::Mat& mask);

// The structural similarity of two pictures of one size, of their grey, 1 for equal ones.
double structuralSimilarity(const cv::Mat& a, const cv::Mat& b);

} // namespace doccam::test
