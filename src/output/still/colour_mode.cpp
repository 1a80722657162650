#include "output/still/colour_mode.h"

#include "base/pixel.h"

#include <opencv2/imgproc.hpp>

namespace doccam {
namespace {

constexpr int kNeighbourhood = 179;
constexpr double kBelowMean = 19.0;

cv::Mat greyOf(const cv::Mat& page) {
    cv::Mat grey;
    cv::cvtColor(page, grey, cv::COLOR_BGR2GRAY);
    return grey;
}

} // namespace

std::optional<cv::Mat> pictureInMode(const cv::Mat& page, int colorMode) {
    switch (colorMode) {
    case 0:
        return page;
    case 1:
        return greyOf(page);
    case 2: {
        cv::Mat grey = greyOf(page);
        cv::adaptiveThreshold(grey, grey, kWhite, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY,
                              kNeighbourhood, kBelowMean);
        return grey;
    }
    default:
        return std::nullopt;
    }
}

} // namespace doccam
