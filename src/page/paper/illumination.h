// The light on a page.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// On a grid of cells of scale by scale page pixels, the first at the page's top left corner.
struct Illumination {
    cv::Mat light; // 32-bit floats, the page's channels: what blank paper would show
    cv::Mat paper; // 32-bit floats, 1 on paper and its ink, 0 in pictures and fills
    int scale = 1;
};

// Of an 8-bit page, grey or blue first. Without any paper, the light of a page that needs no
// change, and paper 0 throughout.
Illumination illumination(const cv::Mat& page);

} // namespace doccam::page
