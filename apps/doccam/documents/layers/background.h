// What lies under a page's ink.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <vector>

namespace doccam::host {

// The page at that size, of its type, without what is hidden: 8-bit, the page's size, not 0 where
// ink lies. Filled there from around.
cv::Mat groundOf(const cv::Mat& page, const cv::Mat& hidden, cv::Size size);

// Where the ground, which ink is hidden on, shows print too faint for ink: 8-bit, a value per cell.
// Such print is at most side cells wide, an odd number.
cv::Mat faintPrint(const cv::Mat& ground, const cv::Mat& hidden, int side);

// Takes out of the ground what ink left there: dark dots and lines of up to side cells, an odd
// number. Leaves what is to be kept, 8-bit and of the ground's size, as it is.
void removeRemains(cv::Mat& ground, int side, const cv::Mat& kept);

// Whether nothing but white paper is to be seen.
bool isWhite(const cv::Mat& ground);

// The smallest JPEG of the ground, at quality or, to keep within maximumBytes, somewhat less.
std::vector<unsigned char> encodedGround(const cv::Mat& ground, int quality,
                                         std::size_t maximumBytes);

} // namespace doccam::host
