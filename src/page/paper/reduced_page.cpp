// A page made small, and free of thin ink.
#include "page/paper/reduced_page.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::page {

cv::Mat halved(const cv::Mat& picture) {
    const cv::Size half(std::max(1, picture.cols / 2), std::max(1, picture.rows / 2));
    const cv::Rect whole(0, 0, std::min(picture.cols, half.width * 2),
                         std::min(picture.rows, half.height * 2));
    cv::Mat smaller;
    cv::resize(picture(whole), smaller, half, 0, 0, cv::INTER_AREA);
    return smaller;
}

ReducedPage reducePage(const cv::Mat& page, int maximum) {
    ReducedPage reduced{page};
    while (std::max(reduced.pixels.cols, reduced.pixels.rows) > maximum) {
        reduced.pixels = halved(reduced.pixels);
        reduced.scale *= 2;
    }
    return reduced;
}

cv::Mat withoutInk(const cv::Mat& picture, int thickness) {
    cv::Mat closed;
    cv::morphologyEx(picture, closed, cv::MORPH_CLOSE,
                     cv::getStructuringElement(cv::MORPH_RECT, {thickness, thickness}));
    return closed;
}

} // namespace doccam::page
