// The light on a page.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// On a grid of cells of scale by scale page pixels, the first at the page's top left corner.
struct Illumination {
    cv::Mat light; // 32-bit floats, the page's channels: what blank paper would show
    cv::Mat paper; // 32-bit floats, 1 on paper and its ink, 0 in pictures and fills
    int scale = 1;
    cv::Scalar ground = cv::Scalar::all(255); // what the sheet looks like without print
};

// Of an 8-bit page, grey or blue first. A sheet of a colour of its own keeps it: paper is 0
// throughout. Without any sheet, as in a photograph, the light of a page that needs no change.
Illumination illumination(const cv::Mat& page);

} // namespace doccam::page
