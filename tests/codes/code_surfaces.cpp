#include "code_surfaces.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::test {

namespace {

const cv::Scalar kBeside = cv::Scalar::all(120); // what lies beside the surface

void light(cv::Mat& sheet, const cv::Mat& level) {
    cv::Mat levels;
    cv::merge(std::vector<cv::Mat>(3, level), levels);
    cv::multiply(sheet, levels, sheet, 1, CV_8U);
}

} // namespace

cv::Mat aroundCan(const cv::Mat& sheet, double span, bool upright, cv::RNG& random) {
    const cv::Mat flat = upright ? sheet : cv::Mat(sheet.t());
    const double half = span / 2 * CV_PI / 180;
    const double radius = flat.cols / (2 * half);
    const double bow = random.uniform(-0.2, 0.2); // the can is seen from somewhat above or below
    const double lamp = random.uniform(-0.5, 0.5);
    const int width = cvFloor(2 * radius * std::sin(half));
    cv::Mat across(flat.rows, width, CV_32F);
    cv::Mat along(flat.rows, width, CV_32F);
    cv::Mat level(flat.rows, width, CV_32F);
    for (int x = 0; x < width; ++x) {
        const double angle = std::asin(std::clamp((x - width / 2.0) / radius, -1.0, 1.0));
        const double shift = bow * radius * (1 - std::cos(angle));
        for (int y = 0; y < flat.rows; ++y) {
            across.at<float>(y, x) = static_cast<float>(flat.cols / 2.0 + radius * angle);
            along.at<float>(y, x) = static_cast<float>(y - shift);
            level.at<float>(y, x) = static_cast<float>(0.3 + 0.7 * std::cos(angle - lamp));
        }
    }
    cv::Mat seen;
    cv::remap(flat, seen, across, along, cv::INTER_LINEAR, cv::BORDER_CONSTANT, kBeside);
    light(seen, level);
    return upright ? seen : cv::Mat(seen.t());
}

cv::Mat crumpled(const cv::Mat& sheet, double pixels, cv::RNG& random) {
    constexpr int kFolds = 7; // along the shorter side
    const int shorter = std::min(sheet.cols, sheet.rows);
    const cv::Size coarse(kFolds * sheet.cols / shorter + 2, kFolds * sheet.rows / shorter + 2);
    cv::Mat height(coarse, CV_32F);
    random.fill(height, cv::RNG::NORMAL, 0, 1);
    cv::resize(cv::abs(height), height, sheet.size(), 0, 0, cv::INTER_CUBIC);
    // The slope as change of height along one fold, so that it does not depend on the sheet's size.
    const double fold = static_cast<double>(shorter) / kFolds;
    cv::Mat right;
    cv::Mat down;
    cv::Sobel(height, right, CV_32F, 1, 0, 3, fold / 8);
    cv::Sobel(height, down, CV_32F, 0, 1, 3, fold / 8);
    cv::Mat across(sheet.size(), CV_32F);
    cv::Mat along(sheet.size(), CV_32F);
    for (int y = 0; y < sheet.rows; ++y) {
        for (int x = 0; x < sheet.cols; ++x) {
            across.at<float>(y, x) = static_cast<float>(x + pixels * right.at<float>(y, x));
            along.at<float>(y, x) = static_cast<float>(y + pixels * down.at<float>(y, x));
        }
    }
    cv::Mat seen;
    cv::remap(sheet, seen, across, along, cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    cv::Mat level = 0.88 + 0.08 * right + 0.05 * down;
    cv::max(cv::min(level, 1.0), 0.4, level);
    light(seen, level);
    return seen;
}

} // namespace doccam::test
