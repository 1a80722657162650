#include "documents/layers/picture_regions.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <functional>
#include <numeric>
#include <vector>

namespace doccam::host {
namespace {

constexpr double kSmallestPicture = 7; // millimetres, in both ways
constexpr double kBorder = 0.7;        // millimetres that are left out
constexpr int kUnprinted = 245;        // paler is not printed
constexpr int kStep = 10;              // levels between neighbouring cells
constexpr double kRough = 0.012;       // of a picture's cells
constexpr int kToneWidth = 8;          // levels
constexpr int kCommonTones = 5;        // of fills, charts and their print
constexpr double kFewTones = 0.75;     // of the cells of what is no picture

cv::Mat steps(const cv::Mat& levels) {
    cv::Mat gradient;
    cv::morphologyEx(levels, gradient, cv::MORPH_GRADIENT,
                     cv::getStructuringElement(cv::MORPH_CROSS, {3, 3}));
    return gradient;
}

// The share of the cells that the most frequent tones have.
double shareOfCommonTones(const cv::Mat& levels, const cv::Mat& where, int count) {
    std::vector<int> tones(256 / kToneWidth, 0);
    for (int y = 0; y < levels.rows; ++y) {
        for (int x = 0; x < levels.cols; ++x) {
            tones[levels.at<unsigned char>(y, x) / kToneWidth] +=
                where.at<unsigned char>(y, x) != 0;
        }
    }
    std::sort(tones.begin(), tones.end(), std::greater<>());
    return std::accumulate(tones.begin(), tones.begin() + kCommonTones, 0.0) / count;
}

bool isPicture(const cv::Mat& region, const cv::Mat& rough, const cv::Mat& bright, int border) {
    cv::Mat inside;
    cv::erode(region, inside, squareKernel(border), {-1, -1}, 1, cv::BORDER_CONSTANT,
              cv::Scalar::all(0));
    const int count = cv::countNonZero(inside);
    return count > 0 && cv::countNonZero(inside & rough) > kRough * count &&
           shareOfCommonTones(bright, inside, count) < kFewTones;
}

} // namespace

cv::Mat pictureRegions(const CoarsePage& coarse) {
    // Print is rough either without its thin dark strokes or without its light ones; pictures are
    // in both ways.
    const cv::Mat rough = cv::min(steps(coarse.bright), steps(coarse.dark)) > kStep;
    cv::Mat labels;
    cv::Mat stats;
    cv::Mat centres;
    const int count = cv::connectedComponentsWithStats(coarse.bright < kUnprinted, labels, stats,
                                                       centres, 4, CV_32S);
    const int smallest = oddCells(coarse, kSmallestPicture);
    const int border = oddCells(coarse, 2 * kBorder);
    cv::Mat regions = cv::Mat::zeros(labels.size(), CV_8U);
    for (int label = 1; label < count; ++label) {
        const auto stat = [&](int which) { return stats.at<int>(label, which); };
        const cv::Rect box(stat(cv::CC_STAT_LEFT), stat(cv::CC_STAT_TOP), stat(cv::CC_STAT_WIDTH),
                           stat(cv::CC_STAT_HEIGHT));
        if (std::min(box.width, box.height) < smallest) {
            continue;
        }
        const cv::Mat region = labels(box) == label;
        if (isPicture(region, rough(box), coarse.bright(box), border)) {
            regions(box).setTo(255, region);
        }
    }
    // With the light and the dark details inside, and what the picture's edge shades.
    cv::morphologyEx(regions, regions, cv::MORPH_CLOSE, squareKernel(smallest / 2 * 2 + 1));
    cv::dilate(regions, regions, squareKernel(3));
    return regions;
}

} // namespace doccam::host
