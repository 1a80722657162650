// A page seen coarsely: what lies under its print, and how much the print stands out.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::host {

inline constexpr double kThickestStroke = 2.2; // millimetres

// Of cells of factor by factor pixels, the first at the page's top left corner; the last column and
// row may reach past the page.
struct CoarsePage {
    int factor = 1;
    double dpi = 100; // cells per inch
    cv::Mat cells;    // the page's type: means
    cv::Mat grey;     // 8-bit: means
    cv::Mat darkest;  // 8-bit: the darkest and the lightest pixel
    cv::Mat lightest;
    cv::Mat bright; // 8-bit: without thin dark strokes
    cv::Mat dark;   // 8-bit: without thin light strokes
};

// About 100 cells per inch. grey is the page's grey.
CoarsePage coarsePage(const cv::Mat& page, const cv::Mat& grey, double dpi);

// An odd number of cells that span about that many millimetres.
int oddCells(const CoarsePage& coarse, double millimetres);

// Each pixel's highest value.
cv::Mat largestChannel(const cv::Mat& picture);

// For morphology: side by side cells.
cv::Mat squareKernel(int side);

// A grid of the page's cells, linearly stretched over the page at size, which is scale times its
// pixels.
cv::Mat stretched(const cv::Mat& grid, const CoarsePage& coarse, cv::Size size, double scale);

} // namespace doccam::host
