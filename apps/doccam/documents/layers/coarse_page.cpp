#include "documents/layers/coarse_page.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::host {
namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kCellsPerInch = 100;
constexpr int kLargestFactor = 16;

// The last column and row repeated until whole cells cover the picture.
cv::Mat inWholeCells(const cv::Mat& picture, int factor) {
    const int right = (factor - picture.cols % factor) % factor;
    const int bottom = (factor - picture.rows % factor) % factor;
    if (right == 0 && bottom == 0) {
        return picture;
    }
    cv::Mat whole;
    cv::copyMakeBorder(picture, whole, 0, bottom, 0, right, cv::BORDER_REPLICATE);
    return whole;
}

// The first pixel of each cell.
cv::Mat firstOfCells(const cv::Mat& picture, cv::Size cells) {
    cv::Mat first;
    cv::resize(picture, first, cells, 0, 0, cv::INTER_NEAREST);
    return first;
}

} // namespace

cv::Mat squareKernel(int side) {
    return cv::getStructuringElement(cv::MORPH_RECT, {side, side});
}

cv::Mat largestChannel(const cv::Mat& picture) {
    std::vector<cv::Mat> channels;
    cv::split(picture, channels);
    for (std::size_t i = 1; i < channels.size(); ++i) {
        channels[0] = cv::max(channels[0], channels[i]);
    }
    return channels[0];
}

int oddCells(const CoarsePage& coarse, double millimetres) {
    return 2 * std::max(1, cvRound(millimetres / kMillimetresPerInch * coarse.dpi / 2)) + 1;
}

CoarsePage coarsePage(const cv::Mat& page, const cv::Mat& grey, double dpi) {
    CoarsePage coarse;
    coarse.factor = std::clamp(cvRound(dpi / kCellsPerInch), 1, kLargestFactor);
    coarse.dpi = dpi / coarse.factor;
    const cv::Mat whole = inWholeCells(grey, coarse.factor);
    const cv::Size cells(whole.cols / coarse.factor, whole.rows / coarse.factor);
    cv::resize(inWholeCells(page, coarse.factor), coarse.cells, cells, 0, 0, cv::INTER_AREA);
    cv::resize(whole, coarse.grey, cells, 0, 0, cv::INTER_AREA);
    cv::Mat extremes;
    const cv::Point first(0, 0);
    cv::erode(whole, extremes, squareKernel(coarse.factor), first);
    coarse.darkest = firstOfCells(extremes, cells);
    cv::dilate(whole, extremes, squareKernel(coarse.factor), first);
    coarse.lightest = firstOfCells(extremes, cells);
    const cv::Mat stroke = squareKernel(oddCells(coarse, kThickestStroke));
    cv::morphologyEx(coarse.grey, coarse.bright, cv::MORPH_CLOSE, stroke);
    cv::morphologyEx(coarse.grey, coarse.dark, cv::MORPH_OPEN, stroke);
    return coarse;
}

cv::Mat stretched(const cv::Mat& grid, const CoarsePage& coarse, cv::Size size, double scale) {
    // Cells past the page are cut off.
    const cv::Size whole(cvRound(grid.cols * coarse.factor * scale),
                         cvRound(grid.rows * coarse.factor * scale));
    cv::Mat large;
    cv::resize(grid, large,
               {std::max(whole.width, size.width), std::max(whole.height, size.height)}, 0, 0,
               cv::INTER_LINEAR);
    return large(cv::Rect({}, size));
}

} // namespace doccam::host
