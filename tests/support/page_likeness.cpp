#include "support/page_likeness.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>

namespace doccam::test {
namespace {

cv::Mat grey(const cv::Mat& image) {
    if (image.channels() == 1) {
        return image;
    }
    cv::Mat result;
    cv::cvtColor(image, result, cv::COLOR_BGR2GRAY);
    return result;
}

cv::Mat turned(const cv::Mat& image, double degrees) {
    const cv::Point2f centre(static_cast<float>(image.cols) / 2,
                             static_cast<float>(image.rows) / 2);
    cv::Mat result;
    cv::warpAffine(image, result, cv::getRotationMatrix2D(centre, degrees, 1), image.size(),
                   cv::INTER_LINEAR, cv::BORDER_CONSTANT, cv::Scalar(255));
    return result;
}

// High when lines of text align with rows of pixels.
double rowContrast(const cv::Mat& image) {
    cv::Mat rows;
    cv::reduce(image, rows, 1, cv::REDUCE_AVG, CV_64F);
    cv::Mat steps = rows.rowRange(1, rows.rows) - rows.rowRange(0, rows.rows - 1);
    return cv::norm(steps, cv::NORM_L2SQR);
}

} // namespace

cv::Mat turnedBack(const cv::Mat& page, int quarters) {
    cv::Mat result = grey(page);
    for (int turn = 0; turn < ((quarters % 4) + 4) % 4; ++turn) {
        cv::rotate(result, result, cv::ROTATE_90_COUNTERCLOCKWISE);
    }
    return result;
}

double likeness(const cv::Mat& greyPage, const cv::Mat& flatSheet, int border) {
    const cv::Rect inner(border, border, greyPage.cols - 2 * border, greyPage.rows - 2 * border);
    cv::Mat page = greyPage(inner).clone();
    cv::Mat flat;
    cv::resize(grey(flatSheet), flat, page.size(), 0, 0, cv::INTER_AREA);
    // Letter strokes are finer than the play of the outline.
    cv::GaussianBlur(page, page, {9, 9}, 0);
    cv::GaussianBlur(flat, flat, {9, 9}, 0);
    cv::Mat result;
    cv::matchTemplate(page, flat, result, cv::TM_CCOEFF_NORMED);
    return result.at<float>(0, 0);
}

double lineTilt(const cv::Mat& greyPage) {
    double best = 0;
    double bestContrast = -1;
    for (double tilt = -2; tilt <= 2; tilt += 0.25) {
        const double contrast = rowContrast(turned(greyPage, tilt));
        if (contrast > bestContrast) {
            bestContrast = contrast;
            best = tilt;
        }
    }
    return std::abs(best);
}

} // namespace doccam::test
