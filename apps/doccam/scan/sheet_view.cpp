#include "scan/sheet_view.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace doccam::host {
namespace {

constexpr int kLongSide = 640; // two pixels per millimetre of A4
constexpr int kShortSide = 452;
constexpr int kReducedWidth = 1000;
constexpr double kSmoothing = 1.0; // pixels; no sharper than sheets can be laid over each other
constexpr int kPaperReach = 11;    // pixels, wider than strokes, narrower than fingers
constexpr double kCoveredLevel = 0.8;
constexpr int kCoverReach = 25;
constexpr double kPaperShare = 0.9; // the paper's level exceeds that part of the page

cv::Mat reducedGreyFor(const cv::Mat& frame, int& factor) {
    factor = std::max(1, frame.cols / kReducedWidth);
    const cv::Size size(frame.cols / factor, frame.rows / factor);
    cv::Mat small = frame;
    if (factor > 1) {
        cv::resize(frame(cv::Rect({0, 0}, size * factor)), small, size, 0, 0, cv::INTER_AREA);
    }
    cv::Mat grey;
    cv::cvtColor(small, grey, cv::COLOR_RGB2GRAY);
    return grey;
}

SheetCorners cornersOf(cv::Size frame) {
    const double right = frame.width - 0.5;
    const double bottom = frame.height - 0.5;
    return {{{-0.5, -0.5}, {right, -0.5}, {right, bottom}, {-0.5, bottom}}};
}

double widthOf(const SheetCorners& corners) {
    return (cv::norm(corners[1] - corners[0]) + cv::norm(corners[2] - corners[3])) / 2;
}

double heightOf(const SheetCorners& corners) {
    return (cv::norm(corners[3] - corners[0]) + cv::norm(corners[2] - corners[1])) / 2;
}

// Landscape or portrait as the sheet is seen, so that nothing is distorted much.
cv::Size canvasFor(const SheetCorners& corners) {
    return widthOf(corners) > heightOf(corners) ? cv::Size(kLongSide, kShortSide)
                                                : cv::Size(kShortSide, kLongSide);
}

cv::Mat straightened(const cv::Mat& grey, const SheetCorners& corners, int factor) {
    const cv::Size canvas = canvasFor(corners);
    std::array<cv::Point2f, 4> from;
    std::transform(corners.begin(), corners.end(), from.begin(), [&](const cv::Point2d& corner) {
        return cv::Point2f((corner + cv::Point2d(0.5, 0.5)) / factor - cv::Point2d(0.5, 0.5));
    });
    const float right = static_cast<float>(canvas.width) - 0.5F;
    const float bottom = static_cast<float>(canvas.height) - 0.5F;
    const std::array<cv::Point2f, 4> to{
        {{-0.5F, -0.5F}, {right, -0.5F}, {right, bottom}, {-0.5F, bottom}}};
    cv::Mat page;
    cv::warpPerspective(grey, page, cv::getPerspectiveTransform(from, to), canvas, cv::INTER_LINEAR,
                        cv::BORDER_REPLICATE);
    return page;
}

double paperLevel(const cv::Mat& paper) {
    cv::Mat sorted;
    cv::sort(paper.reshape(1, 1), sorted, cv::SORT_EVERY_ROW | cv::SORT_ASCENDING);
    return sorted.at<float>(static_cast<int>(kPaperShare * (sorted.cols - 1)));
}

} // namespace

SheetView viewOf(const cv::Mat& frame, const std::optional<SheetCorners>& seen) {
    const SheetCorners corners = seen.value_or(cornersOf(frame.size()));
    int factor = 1;
    const cv::Mat grey = reducedGreyFor(frame, factor);
    cv::Mat page;
    straightened(grey, corners, factor).convertTo(page, CV_32F);
    cv::GaussianBlur(page, page, {}, kSmoothing);
    cv::Mat paper;
    const cv::Mat reach = cv::getStructuringElement(cv::MORPH_ELLIPSE, {kPaperReach, kPaperReach});
    cv::dilate(page, paper, reach);
    cv::GaussianBlur(paper, paper, {}, kPaperReach / 2.0);
    SheetView view;
    cv::divide(page, cv::max(paper, 1), view.ink);
    cv::dilate(paper < kCoveredLevel * paperLevel(paper), view.covered,
               cv::Mat::ones(kCoverReach, kCoverReach, CV_8U));
    view.detail = heightOf(corners) / view.ink.rows;
    return view;
}

} // namespace doccam::host
