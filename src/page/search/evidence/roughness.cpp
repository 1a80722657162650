#include "page/search/evidence/roughness.h"

#include <opencv2/imgproc.hpp>

namespace doccam::page {

cv::Mat roughnessOf(const cv::Mat& colour) {
    constexpr int kStroke = 7; // of print, at most
    constexpr double kScale = 16;
    cv::Mat lightness;
    cv::extractChannel(colour, lightness, 0);
    cv::morphologyEx(lightness, lightness, cv::MORPH_CLOSE, cv::Mat::ones(kStroke, kStroke, CV_8U));
    cv::Mat smooth;
    cv::GaussianBlur(lightness, smooth, {9, 9}, 2.5);
    cv::Mat rough;
    cv::Mat(cv::abs(lightness - smooth)).convertTo(rough, CV_8U, kScale);
    // Medians of so many pixels take their time: those of a quarter of them will do.
    cv::Mat halved;
    cv::resize(rough, halved, {(rough.cols + 1) / 2, (rough.rows + 1) / 2}, 0, 0, cv::INTER_AREA);
    cv::medianBlur(halved, halved, 5);
    cv::resize(halved, rough, rough.size(), 0, 0, cv::INTER_NEAREST);
    return rough;
}

} // namespace doccam::page
