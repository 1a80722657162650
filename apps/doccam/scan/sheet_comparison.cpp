#include "scan/sheet_comparison.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::host {
namespace {

constexpr int kBlockWidth = 16;     // pixels: some letters of a line
constexpr int kBlockHeight = 12;    // a line with the space around it
constexpr int kFarthest = 6;        // of half a pixel, by which a block is moved at most
constexpr double kCoverable = 0.4;  // of the page, by a hand
constexpr double kManyBlocks = 0.1; // that differ: another sheet at the first look

// The less the frames show of a line, the less exactly two views of it agree.
double clearDifference(const SheetView& one, const SheetView& other) {
    const double detail = std::min(one.detail, other.detail);
    return detail >= 2 ? 0.03 : detail >= 1 ? 0.042 : 0.065;
}

// CV_32F, the mean of each block.
cv::Mat blockMeans(const cv::Mat& picture) {
    cv::Mat means;
    cv::resize(picture, means, {picture.cols / kBlockWidth, picture.rows / kBlockHeight}, 0, 0,
               cv::INTER_AREA);
    return means;
}

cv::Mat movedBy(const cv::Mat& picture, double right, double down) {
    const cv::Matx23d way(1, 0, right, 0, 1, down);
    cv::Mat moved;
    cv::warpAffine(picture, moved, way, picture.size(), cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    return moved;
}

// How much the ink differs in each block, where it was moved to fit best. Tries whole pixels, or
// halves as well.
cv::Mat inkDifferences(const SheetView& one, const SheetView& other, bool halves) {
    const int step = halves ? 1 : 2;
    cv::Mat least(one.ink.rows / kBlockHeight, one.ink.cols / kBlockWidth, CV_32F, cv::Scalar(1));
    for (int right = -kFarthest; right <= kFarthest; right += step) {
        for (int down = -kFarthest; down <= kFarthest; down += step) {
            cv::Mat difference;
            cv::absdiff(one.ink, movedBy(other.ink, 0.5 * right, 0.5 * down), difference);
            cv::min(least, blockMeans(difference), least);
        }
    }
    return least;
}

// The blocks that differ, without the outermost: the sheet's own edge differs with each finding of
// its corners.
cv::Mat differing(const cv::Mat& differences, double limit) {
    const cv::Rect inner(1, 1, differences.cols - 2, differences.rows - 2);
    return differences(inner) > limit;
}

cv::Mat coveredBlocks(const SheetView& one, const SheetView& other) {
    return differing(blockMeans((one.covered | other.covered) > 0), 0);
}

double shareOfBlocks(const cv::Mat& blocks) {
    return static_cast<double>(cv::countNonZero(blocks)) / static_cast<double>(blocks.total());
}

} // namespace

bool showSameSheet(const SheetView& one, const SheetView& other) {
    if (one.ink.size() != other.ink.size()) {
        return false;
    }
    const cv::Mat seen = ~coveredBlocks(one, other);
    const double limit = clearDifference(one, other);
    cv::Mat different;
    for (const bool halves : {false, true}) {
        different = differing(inkDifferences(one, other, halves), limit);
        if (shareOfBlocks(different & seen) > kManyBlocks) {
            return false;
        }
    }
    return cv::countNonZero(different & seen) == 0 && shareOfBlocks(different) <= kCoverable;
}

} // namespace doccam::host
