// A page made small, and free of thin ink.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

struct ReducedPage {
    cv::Mat pixels; // the page's type
    int scale = 1;  // page pixels per reduced pixel, a power of two
};

// The page halved until its longer side has at most maximum pixels. Columns and rows past the last
// whole reduced pixel are left out.
ReducedPage reducePage(const cv::Mat& page, int maximum);

// Half the size, each pixel the mean of four; a side of one pixel stays.
cv::Mat halved(const cv::Mat& picture);

// The picture without what is darker than its surroundings and thinner than thickness pixels.
cv::Mat withoutInk(const cv::Mat& picture, int thickness);

} // namespace doccam::page
