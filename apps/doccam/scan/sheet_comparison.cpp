#include "scan/sheet_comparison.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace doccam::host {
namespace {

constexpr int kBlockWidth = 16;  // pixels: some letters of a line
constexpr int kBlockHeight = 12; // a line with the space around it
constexpr double kFarthest = 3;  // pixels by which a block is moved at most
constexpr double kFineReach = 0.75;
constexpr double kFineStep = 0.25;
constexpr double kClearPrint = 0.05;
constexpr double kOfPrint = 0.06;
constexpr double kCoverable = 0.4;  // of the page, by a hand
constexpr double kManyBlocks = 0.1; // that differ: another sheet at the first look

// The less the frames show of a line, the less exactly two views of it agree.
double clearDifference(const SheetView& one, const SheetView& other) {
    const double detail = std::min(one.detail, other.detail);
    return detail >= 2 ? 0.018 : detail >= 1 ? 0.022 : 0.04;
}

// CV_32F, the mean of each block.
cv::Mat blockMeans(const cv::Mat& picture) {
    cv::Mat means;
    cv::resize(picture, means, {picture.cols / kBlockWidth, picture.rows / kBlockHeight}, 0, 0,
               cv::INTER_AREA);
    return means;
}

// CV_32F, how much fine print both have in each block.
cv::Mat sharedPrint(const SheetView& one, const SheetView& other) {
    const auto steepness = [](const cv::Mat& ink) {
        cv::Mat across;
        cv::Mat down;
        cv::Sobel(ink, across, CV_32F, 1, 0, 1);
        cv::Sobel(ink, down, CV_32F, 0, 1, 1);
        return blockMeans(cv::abs(across) + cv::abs(down));
    };
    return cv::min(steepness(one.ink), steepness(other.ink));
}

cv::Mat movedBy(const cv::Mat& picture, double right, double down) {
    const cv::Matx23d way(1, 0, right, 0, 1, down);
    cv::Mat moved;
    cv::warpAffine(picture, moved, way, picture.size(), cv::INTER_LINEAR, cv::BORDER_REPLICATE);
    return moved;
}

// How much the ink differs in each block, where it was moved to fit best.
struct Fit {
    cv::Mat differences; // CV_32F
    cv::Mat right, down; // CV_32F, pixels by which each block was moved
};

// Tries the places around middle, as far as reach away.
Fit fitted(const SheetView& one, const SheetView& other, cv::Point2d middle, double reach,
           double step) {
    const cv::Size blocks(one.ink.cols / kBlockWidth, one.ink.rows / kBlockHeight);
    Fit fit{cv::Mat(blocks, CV_32F, cv::Scalar(2)), cv::Mat::zeros(blocks, CV_32F),
            cv::Mat::zeros(blocks, CV_32F)};
    const int steps = cvRound(reach / step);
    for (int i = -steps; i <= steps; ++i) {
        for (int j = -steps; j <= steps; ++j) {
            const cv::Point2d way = middle + cv::Point2d(i, j) * step;
            cv::Mat difference;
            cv::absdiff(one.ink, movedBy(other.ink, way.x, way.y), difference);
            const cv::Mat means = blockMeans(difference);
            const cv::Mat better = means < fit.differences;
            means.copyTo(fit.differences, better);
            fit.right.setTo(way.x, better);
            fit.down.setTo(way.y, better);
        }
    }
    return fit;
}

// The middle one of the values of blocks with print.
double medianOf(const cv::Mat& values, const cv::Mat& print) {
    std::vector<float> kept;
    for (int y = 0; y < values.rows; ++y) {
        for (int x = 0; x < values.cols; ++x) {
            if (print.at<unsigned char>(y, x) != 0) {
                kept.push_back(values.at<float>(y, x));
            }
        }
    }
    if (kept.empty()) {
        return 0;
    }
    const auto middle = kept.begin() + static_cast<std::ptrdiff_t>(kept.size() / 2);
    std::nth_element(kept.begin(), middle, kept.end());
    return *middle;
}

// Without the outermost blocks: the sheet's own edge differs with each finding of its corners.
cv::Mat inner(const cv::Mat& blocks) {
    return blocks(cv::Rect(1, 1, blocks.cols - 2, blocks.rows - 2));
}

cv::Mat coveredBlocks(const SheetView& one, const SheetView& other) {
    return inner(blockMeans(one.covered | other.covered) > 0);
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
    const cv::Mat print = sharedPrint(one, other);
    // Fine print, such as a code's bars, never fits to the last part of a pixel.
    const cv::Mat allowed = clearDifference(one, other) + kOfPrint * print;
    const Fit coarse = fitted(one, other, {0, 0}, kFarthest, 1);
    if (shareOfBlocks(inner(coarse.differences > allowed) & seen) > kManyBlocks) {
        return false;
    }
    const cv::Point2d middle(medianOf(coarse.right, print > kClearPrint),
                             medianOf(coarse.down, print > kClearPrint));
    const Fit fine = fitted(one, other, middle, kFineReach, kFineStep);
    const cv::Mat different = inner(cv::min(coarse.differences, fine.differences) > allowed);
    return cv::countNonZero(different & seen) == 0 && shareOfBlocks(different) <= kCoverable;
}

} // namespace doccam::host
