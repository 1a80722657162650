// The gamma curve.
#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <map>

namespace {

// One row with every level from 0 to 255 in each channel.
cv::Mat levels(int channels) {
    cv::Mat row(1, 256, CV_8UC(channels));
    for (int i = 0; i < row.cols * channels; ++i) {
        row.data[i] = static_cast<uchar>(i / channels);
    }
    return row;
}

bool isEqual(const cv::Mat& left, const cv::Mat& right) {
    return left.type() == right.type() && cv::norm(left, right, cv::NORM_INF) == 0.0;
}

TEST(GammaCorrection, LiftsDarkLevelsStrongly) {
    cv::Mat source = levels(1);
    cv::Mat result;
    GammaCorrection(source, result, 0.4F);
    const std::map<int, int> expected{{0, 0},    {1, 28},    {10, 70},   {30, 108},
                                      {64, 147}, {128, 194}, {200, 231}, {255, 255}};
    for (const auto& [level, lifted] : expected) {
        EXPECT_EQ(result.at<uchar>(level), lifted) << level;
    }
}

TEST(GammaCorrection, TreatsEachOfThreeChannelsAlike) {
    cv::Mat one = levels(1);
    cv::Mat three = levels(3);
    GammaCorrection(one, one, 0.4F);
    GammaCorrection(three, three, 0.4F);
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(three.at<cv::Vec3b>(i), cv::Vec3b::all(one.at<uchar>(i))) << i;
    }
}

TEST(GammaCorrection, CopiesOtherImagesUnchanged) {
    for (const int channels : {2, 4}) {
        cv::Mat source = levels(channels);
        cv::Mat result;
        GammaCorrection(source, result, 0.4F);
        EXPECT_TRUE(isEqual(result, source)) << channels;
        EXPECT_NE(result.data, source.data) << channels;
    }
}

TEST(GammaCorrection, LeavesItsSourceAlone) {
    cv::Mat source = levels(3);
    cv::Mat result;
    GammaCorrection(source, result, 0.4F);
    EXPECT_TRUE(isEqual(source, levels(3)));
}

TEST(GammaCorrection, ChangesNothingWithGammaOne) {
    cv::Mat source = levels(3);
    cv::Mat result;
    GammaCorrection(source, result, 1.0F);
    EXPECT_TRUE(isEqual(result, source));
}

TEST(GammaCorrection, TurnsEverythingWhiteWithGammaZero) {
    cv::Mat source = levels(1);
    cv::Mat result;
    GammaCorrection(source, result, 0.0F);
    EXPECT_TRUE(isEqual(result, cv::Mat(1, 256, CV_8UC1, cv::Scalar(255))));
}

TEST(GammaCorrection, ReplacesWhatTheDestinationHeld) {
    cv::Mat source = levels(1);
    cv::Mat result(7, 7, CV_32FC3, cv::Scalar::all(1));
    const cv::Mat before = result;
    GammaCorrection(source, result, 0.4F);
    EXPECT_EQ(result.size(), source.size());
    EXPECT_TRUE(isEqual(before, cv::Mat(7, 7, CV_32FC3, cv::Scalar::all(1))));
}

TEST(GammaCorrection, ReturnsAnEmptyImageForAnEmptyOne) {
    cv::Mat source;
    cv::Mat result(7, 7, CV_8UC1);
    GammaCorrection(source, result, 0.4F);
    EXPECT_TRUE(result.empty());
}

} // namespace
