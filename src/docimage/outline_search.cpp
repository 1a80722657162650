#include "docimage/outline_search.h"

#include "docimage/min_area_rectangle.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam {
namespace {

constexpr int kBackgroundAperture = 21;
constexpr int kMiddleLevel = 127;
constexpr int kWhite = 255;

// Single precision, widened.
constexpr double kLift = 0.7F;

} // namespace

cv::Mat reducedGrey(const cv::Mat& frame) {
    cv::Mat reduced;
    cv::resize(frame, reduced, {frame.cols / kReduction, frame.rows / kReduction}, 0, 0,
               cv::INTER_AREA);
    cv::Mat grey;
    cv::cvtColor(reduced, grey, cv::COLOR_RGB2GRAY);
    return grey;
}

cv::Mat backgroundOf(const cv::Mat& grey) {
    cv::Mat background;
    cv::GaussianBlur(grey, background, {kBackgroundAperture, kBackgroundAperture}, 0, 0,
                     cv::BORDER_REPLICATE);
    return background;
}

std::uint8_t liftedLevel(int grey, int background) {
    const int level = static_cast<int>(kLift * (kMiddleLevel - background) + grey);
    return static_cast<std::uint8_t>(std::max(level, 0));
}

cv::Mat liftedContrast(const cv::Mat& grey, const cv::Mat& background) {
    cv::Mat lifted(grey.size(), CV_8UC1);
    for (int y = 0; y < grey.rows; ++y) {
        const std::uint8_t* behind = background.ptr(y);
        std::transform(grey.ptr(y), grey.ptr(y) + grey.cols, behind, lifted.ptr(y), liftedLevel);
    }
    return lifted;
}

cv::Mat binarised(const cv::Mat& grey) {
    cv::Mat binary;
    cv::threshold(grey, binary, 0, kWhite, cv::THRESH_BINARY | cv::THRESH_OTSU);
    return binary;
}

std::optional<std::size_t> indexOfLargest(const std::vector<int>& areas) {
    const auto largest = std::max_element(areas.begin(), areas.end());
    if (largest == areas.end() || *largest <= 0) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(largest - areas.begin());
}

std::array<cv::Point2f, 4> frameCorners(const std::vector<cv::Point>& contour) {
    std::array<cv::Point2f, 4> corners = boxCorners(minAreaRectangle(contour));
    for (cv::Point2f& corner : corners) {
        corner *= static_cast<float>(kReduction);
    }
    return corners;
}

SheetCorners wholePixels(const std::array<cv::Point2f, 4>& corners) {
    SheetCorners whole;
    std::transform(corners.begin(), corners.end(), whole.begin(), [](cv::Point2f corner) {
        return cv::Point(static_cast<int>(corner.x), static_cast<int>(corner.y));
    });
    return whole;
}

} // namespace doccam
