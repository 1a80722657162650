#include "codes/bar_place.h"
#include "unit/barcode/code_drawing.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace doccam::codes {
namespace {

// Bars from (40, 50) to (240, 150) on white, turned about their middle.
cv::Mat turnedBars(double angle) {
    cv::Mat picture(300, 300, CV_8UC1, cv::Scalar(255));
    for (int x = 40, i = 0; x < 240; ++i) {
        const int width = 2 + i * i * 5 % 7;
        if (i % 2 == 0) {
            picture(cv::Rect(x, 50, std::min(width, 240 - x), 100)).setTo(0);
        }
        x += width;
    }
    cv::Mat turned;
    cv::warpAffine(picture, turned, cv::getRotationMatrix2D({140, 100}, angle, 1), picture.size(),
                   cv::INTER_LINEAR, cv::BORDER_CONSTANT, cv::Scalar(255));
    return turned;
}

cv::Point2d turned(cv::Point2d place, double angle) {
    const cv::Mat motion = cv::getRotationMatrix2D({140, 100}, angle, 1);
    return {motion.at<double>(0, 0) * place.x + motion.at<double>(0, 1) * place.y +
                motion.at<double>(0, 2),
            motion.at<double>(1, 0) * place.x + motion.at<double>(1, 1) * place.y +
                motion.at<double>(1, 2)};
}

TEST(BarPlace, FollowsBarsToTheirEnds) {
    for (const double angle : {0.0, 10.0, -25.0, 40.0, 90.0}) {
        const cv::Mat picture = turnedBars(angle);
        // A line that crosses them askew.
        const auto bars = barsAcross(picture, turned({40, 90}, angle), turned({239, 115}, angle));
        ASSERT_TRUE(bars) << angle;
        const cv::Point2d corners[] = {{40, 50}, {240, 50}, {240, 150}, {40, 150}};
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_LT(cv::norm((*bars)[i] - turned(corners[i], angle)), 6) << angle << ' ' << i;
        }
    }
}

TEST(BarPlace, NeedsALineInThePicture) {
    const cv::Mat picture = turnedBars(0);
    EXPECT_FALSE(barsAcross(picture, {10, 10}, {12, 10}));
    EXPECT_FALSE(barsAcross(picture, {-50, 10}, {100, 10}));
    EXPECT_FALSE(barsAcross(picture, {10, 10}, {1e9, 10}));
    EXPECT_FALSE(barsAcross(cv::Mat(1, 1, CV_8UC1, cv::Scalar(0)), {0, 0}, {100, 0}));
}

} // namespace
} // namespace doccam::codes
