#include "docimage/sheet_outline.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace doccam {
namespace {

using Contour = std::vector<cv::Point>;

constexpr int kWhite = 255;
constexpr int kSmallRegion = 30000; // pixels
constexpr int kThickness = 2;       // drawn three pixels wide

cv::Mat brightRegions(const cv::Mat& picture) {
    cv::Mat regions;
    cv::cvtColor(picture, regions, cv::COLOR_RGB2GRAY);
    cv::threshold(regions, regions, 0, kWhite, cv::THRESH_BINARY | cv::THRESH_OTSU);
    return regions;
}

// A region that touches the picture's edge is outlined just inside of it.
void clearFrame(cv::Mat& regions) {
    regions.row(0).setTo(0);
    regions.row(regions.rows - 1).setTo(0);
    regions.col(0).setTo(0);
    regions.col(regions.cols - 1).setTo(0);
}

bool isLarge(const Contour& contour) {
    return static_cast<int>(cv::contourArea(contour)) > kSmallRegion;
}

} // namespace

WorkPlane sheetOutline(const cv::Mat& picture) {
    cv::Mat regions = brightRegions(picture);
    clearFrame(regions);
    std::vector<Contour> contours;
    cv::findContours(regions, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    contours.erase(contours.begin(), std::find_if(contours.begin(), contours.end(), isLarge));

    WorkPlane outline(picture.size());
    if (!contours.empty()) {
        cv::drawContours(outline.rows(), contours, -1, cv::Scalar(kWhite), kThickness);
    }
    return outline;
}

} // namespace doccam
