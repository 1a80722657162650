#include "plain/black_edge.h"

#include "plain/margins.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <vector>

namespace doccam::plain {
namespace {

using Contour = std::vector<cv::Point>;

constexpr int kSmallRegion = 30000;
constexpr float kGamma = 0.4F;
constexpr int kRowUnit = 4;

cv::Mat flatFielded(const cv::Mat& page) {
    cv::Mat curve(1, 256, CV_8UC1);
    for (int i = 0; i < 256; ++i) {
        curve.at<uchar>(i) =
            cv::saturate_cast<uchar>(std::pow(static_cast<float>(i / 255.0), kGamma) * 255.0F);
    }
    cv::Mat result = page.clone();
    cv::LUT(result, curve, result);
    return result;
}

cv::Mat flattened(const cv::Mat& page) {
    cv::Mat result = page.clone();
    for (cv::Vec3b& pixel : cv::Mat_<cv::Vec3b>(result)) {
        if ((pixel[0] + pixel[1] + pixel[2]) / 3 > 30) {
            pixel = cv::Vec3b::all(128);
        }
    }
    return result;
}

bool isLarge(const Contour& contour) {
    return static_cast<int>(cv::contourArea(contour)) > kSmallRegion;
}

void whitenAround(const Plane& outline, cv::Mat& page) {
    paintMargins(page, findMargins(page.size(),
                                   [&](int x, int y) { return outline.unpaddedAt(x, y) == 255; }));
}

} // namespace

Plane::Plane(cv::Size size)
  : memory(size.height, (size.width + kRowUnit - 1) / kRowUnit * kRowUnit, CV_8UC1, cv::Scalar(0))
  , rows(size.height, size.width, CV_8UC1, memory.data, memory.step) {}

Plane sheetOutline(const cv::Mat& page) {
    cv::Mat regions;
    cv::cvtColor(page, regions, cv::COLOR_RGB2GRAY);
    cv::threshold(regions, regions, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    regions.row(0).setTo(0);
    regions.row(regions.rows - 1).setTo(0);
    regions.col(0).setTo(0);
    regions.col(regions.cols - 1).setTo(0);
    std::vector<Contour> contours;
    cv::findContours(regions, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    contours.erase(contours.begin(), std::find_if(contours.begin(), contours.end(), isLarge));
    Plane outline(page.size());
    if (!contours.empty()) {
        cv::drawContours(outline.rows, contours, -1, cv::Scalar(255), 2);
    }
    return outline;
}

bool isColoured(const cv::Vec3b& pixel) {
    const int mean = (pixel[0] + pixel[1] + pixel[2]) / 3;
    return std::abs(mean - pixel[0]) > 30 || std::abs(mean - pixel[1]) > 30 ||
           std::abs(mean - pixel[2]) > 30;
}

Plane marginMask(const cv::Mat& page) {
    const Plane outline = sheetOutline(flatFielded(page));
    Plane mask(page.size());
    paintMargins(mask.rows, findMargins(page.size(), [&](int x, int y) {
                     return outline.unpaddedAt(x, y) == 255 || isColoured(page.at<cv::Vec3b>(y, x));
                 }));
    return mask;
}

void deleteBlackEdge(cv::Mat page) {
    whitenAround(sheetOutline(flatFielded(flattened(page))), page);
}

void deleteBlackEdgeByBrightness(cv::Mat page) {
    whitenAround(sheetOutline(page), page);
}

} // namespace doccam::plain
