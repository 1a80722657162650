#include "plain/outline.h"

#include "docimage/sheet/min_area_rectangle.h"

#include <opencv2/core/core_c.h>
#include <opencv2/imgproc.hpp>
#include <opencv2/imgproc/imgproc_c.h>

#include <cmath>
#include <memory>

namespace doccam::plain {
namespace {

constexpr int kReduction = 4;
constexpr int kLargestSpeck = 400;
constexpr int kAperture = 21;
constexpr int kMiddleLevel = 127;
constexpr double kLift = 0.7F;
constexpr int kLineWidth = 6;

struct Release {
    void operator()(CvMemStorage* storage) const { cvReleaseMemStorage(&storage); }
};

using Corners = std::array<cv::Point2f, 4>;

Corners frameCorners(const CvSeq* contour) {
    std::vector<cv::Point> points(static_cast<std::size_t>(contour->total));
    cvCvtSeqToArray(contour, points.data());
    Corners corners = boxCorners(MinAreaFit().around(points));
    for (cv::Point2f& corner : corners) {
        corner *= static_cast<float>(kReduction);
    }
    return corners;
}

void draw(cv::Mat& frame, const Corners& corners) {
    for (std::size_t i = 0; i < corners.size(); ++i) {
        cv::line(frame, cv::Point(corners[i]), cv::Point(corners[(i + 1) % corners.size()]),
                 cv::Scalar(0, 255, 0, 0), kLineWidth, cv::LINE_8);
    }
}

} // namespace

cv::Mat reducedGrey(const cv::Mat& frame) {
    cv::Mat reduced, grey;
    cv::resize(frame, reduced, {frame.cols / kReduction, frame.rows / kReduction}, 0, 0,
               cv::INTER_AREA);
    cv::cvtColor(reduced, grey, cv::COLOR_RGB2GRAY);
    return grey;
}

cv::Mat flatFielded(const cv::Mat& grey) {
    cv::Mat background;
    cv::GaussianBlur(grey, background, {kAperture, kAperture}, 0, 0, cv::BORDER_REPLICATE);
    cv::Mat result(grey.size(), CV_8UC1);
    for (int y = 0; y < grey.rows; ++y) {
        for (int x = 0; x < grey.cols; ++x) {
            const int level = static_cast<int>(kLift * (kMiddleLevel - background.at<uchar>(y, x)) +
                                               grey.at<uchar>(y, x));
            result.at<uchar>(y, x) = static_cast<uchar>(std::max(level, 0));
        }
    }
    return result;
}

Outline drawEdge(cv::Mat& frame, int drawFlag) {
    cv::Mat binary = flatFielded(reducedGrey(frame));
    cv::threshold(binary, binary, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    const std::unique_ptr<CvMemStorage, Release> storage(cvCreateMemStorage(0));
    CvMat view = cvMat(binary);
    CvSeq* contour = nullptr;
    cvFindContours(&view, storage.get(), &contour, sizeof(CvContour), CV_RETR_EXTERNAL,
                   CV_CHAIN_APPROX_NONE, cvPoint(0, 0));
    if (contour == nullptr) {
        return {.result = -1};
    }
    Outline outline;
    const CvSeq* sheet = nullptr;
    int largest = 0;
    for (; contour != nullptr; contour = contour->h_next) {
        const int area = static_cast<int>(std::fabs(cvContourArea(contour)));
        if (area > kLargestSpeck) {
            outline.areas.push_back(area);
        }
        if (area > kLargestSpeck && area > largest) {
            largest = area;
            sheet = contour;
        }
    }
    if (sheet == nullptr) {
        return {.result = -2};
    }
    const Corners corners = frameCorners(sheet);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        outline.corners[2 * i] = static_cast<int>(corners[i].x);
        outline.corners[2 * i + 1] = static_cast<int>(corners[i].y);
    }
    if (drawFlag == 1) {
        draw(frame, corners);
    }
    return outline;
}

} // namespace doccam::plain
