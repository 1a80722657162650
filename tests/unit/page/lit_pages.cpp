#include "lit_pages.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace doccam::page {

cv::Mat printedPage(int type, cv::Size size) {
    cv::Mat page(size, type, kWhite);
    for (int y = 120; y < size.height - 80; y += 60) {
        cv::putText(page, "The quick brown fox jumps over it", {80, y}, cv::FONT_HERSHEY_SIMPLEX,
                    1.0, kBlack, 2, cv::LINE_AA);
    }
    return page;
}

cv::Mat lit(const cv::Mat& print, const cv::Scalar& colour, double darkest) {
    cv::Mat seen = print.clone();
    for (int x = 0; x < print.cols; ++x) {
        const double share = 1 - (1 - darkest) * x / print.cols;
        cv::multiply(seen.col(x), colour * share, seen.col(x));
    }
    cv::Mat noise(seen.size(), CV_16SC(seen.channels()));
    cv::RNG(7).fill(noise, cv::RNG::NORMAL, 0, 1.5);
    cv::add(seen, noise, seen, cv::noArray(), seen.type());
    return seen;
}

cv::Scalar meanIn(const cv::Mat& picture, const cv::Rect& box) {
    return cv::mean(picture(box));
}

void expectNear(const cv::Scalar& colour, const cv::Scalar& wanted, double tolerance,
                int channels) {
    for (int c = 0; c < channels; ++c) {
        EXPECT_NEAR(colour[c], wanted[c], tolerance) << "channel " << c;
    }
}

int different(const cv::Mat& look, const cv::Mat& print, int tolerance) {
    cv::Mat difference;
    cv::absdiff(look, print, difference);
    cv::Mat far = difference.reshape(1) > tolerance;
    return cv::countNonZero(far);
}

cv::Mat photograph(cv::Size size) {
    cv::Mat photo(size, CV_8UC3);
    cv::RNG(3).fill(photo, cv::RNG::UNIFORM, 0, 256);
    cv::GaussianBlur(photo, photo, {0, 0}, 12);
    cv::normalize(photo, photo, 20, 235, cv::NORM_MINMAX);
    return photo;
}

cv::Mat card(const cv::Scalar& ground) {
    constexpr int kRadius = 38;
    cv::Mat seen(540, 856, CV_8UC3, cv::Scalar(30, 30, 30));
    const cv::Rect box(0, 0, seen.cols, seen.rows);
    cv::rectangle(seen, {kRadius, 0}, {box.width - kRadius, box.height}, ground, cv::FILLED);
    cv::rectangle(seen, {0, kRadius}, {box.width, box.height - kRadius}, ground, cv::FILLED);
    for (const int x : {kRadius, box.width - 1 - kRadius}) {
        for (const int y : {kRadius, box.height - 1 - kRadius}) {
            cv::circle(seen, {x, y}, kRadius, ground, cv::FILLED, cv::LINE_AA);
        }
    }
    cv::putText(seen, "Library card", {100, 120}, cv::FONT_HERSHEY_SIMPLEX, 1.5, kBlack, 3);
    return seen;
}

} // namespace doccam::page
