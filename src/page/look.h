// Making a rectified sheet look like paper.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// The page evenly lit: its paper white, its ink dark, without cast of colour; photographs, pale
// fills, highlighter, stamps and pencil kept; rims of desk filled by paper. page is 8-bit, grey or
// blue first; the result has its type.
cv::Mat paperLook(const cv::Mat& page);

// The same in grey, faster than converting it; the paper is found by its colour.
cv::Mat greyPaperLook(const cv::Mat& page);

// The page in black (0) and white (255), one channel, of one that these have made even.
cv::Mat blackAndWhite(const cv::Mat& paper);

} // namespace doccam::page
