#include "documents/layers/dark_grounds.h"

#include <opencv2/imgproc.hpp>

namespace doccam::host {
namespace {

constexpr int kEvenStep = 20;        // levels across three cells
constexpr double kSmallestPlain = 2; // millimetres, without print
constexpr int kSameGround = 40;      // levels, between the ground of a hole and that around
constexpr double kElseInHole = 0.03; // of its cells

// Whether a hole in a dark area is but light strokes on it: without them, it is as dark.
bool isLightPrint(const cv::Mat& hole, const cv::Mat& around, const cv::Mat& grey,
                  const cv::Mat& dark) {
    cv::Mat rim;
    cv::dilate(hole, rim, squareKernel(3));
    const double level = cv::mean(grey, rim & around)[0];
    const cv::Mat lighter = dark > level + kSameGround;
    return cv::countNonZero(lighter & hole) <= kElseInHole * cv::countNonZero(hole);
}

// The area with the print in its holes.
cv::Mat withPrint(const cv::Mat& area, const cv::Mat& grey, const cv::Mat& dark) {
    cv::Mat labels;
    cv::Mat stats;
    cv::Mat centres;
    const int count =
        cv::connectedComponentsWithStats(area == 0, labels, stats, centres, 8, CV_32S);
    const cv::Rect all({}, area.size());
    cv::Mat whole = area.clone();
    for (int label = 1; label < count; ++label) {
        const auto stat = [&](int which) { return stats.at<int>(label, which); };
        const cv::Rect box(stat(cv::CC_STAT_LEFT) - 1, stat(cv::CC_STAT_TOP) - 1,
                           stat(cv::CC_STAT_WIDTH) + 2, stat(cv::CC_STAT_HEIGHT) + 2);
        const bool isEnclosed = (box & all) == box;
        if (isEnclosed) {
            const cv::Mat hole = labels(box) == label;
            if (isLightPrint(hole, area(box), grey(box), dark(box))) {
                whole(box) |= hole;
            }
        }
    }
    return whole;
}

} // namespace

cv::Mat darkGrounds(const CoarsePage& coarse, const cv::Mat& pictures) {
    cv::Mat range;
    cv::morphologyEx(coarse.grey, range, cv::MORPH_GRADIENT, squareKernel(3));
    const cv::Mat even = (range <= kEvenStep) & (coarse.grey < kDarkGround) & ~pictures;
    cv::Mat labels;
    cv::Mat stats;
    cv::Mat centres;
    const int count = cv::connectedComponentsWithStats(even, labels, stats, centres, 8, CV_32S);
    const int smallest = oddCells(coarse, kSmallestPlain);
    cv::Mat grounds = cv::Mat::zeros(even.size(), CV_8U);
    for (int label = 1; label < count; ++label) {
        const auto stat = [&](int which) { return stats.at<int>(label, which); };
        const cv::Rect box(stat(cv::CC_STAT_LEFT), stat(cv::CC_STAT_TOP), stat(cv::CC_STAT_WIDTH),
                           stat(cv::CC_STAT_HEIGHT));
        if (stat(cv::CC_STAT_AREA) < smallest * smallest) {
            continue;
        }
        const cv::Mat area = labels(box) == label;
        // Thin dark strokes are not.
        if (cv::countNonZero(area & (coarse.bright(box) < kDarkGround)) >= smallest * smallest) {
            grounds(box) |= withPrint(area, coarse.grey(box), coarse.dark(box));
        }
    }
    return grounds;
}

} // namespace doccam::host
