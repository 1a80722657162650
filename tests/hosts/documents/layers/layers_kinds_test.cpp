// Pages of unusual kinds.
#include "documents/layers/layers.h"
#include "flattened_layers.h"
#include "scene/pages/contents.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace doccam::test {

namespace {

using host::Layers;
using host::splitLayers;

const cv::Scalar kWhite = cv::Scalar::all(255);

cv::Mat withText(const cv::Mat& page, const cv::Scalar& colour) {
    cv::putText(page, "Some print", {40, 120}, cv::FONT_HERSHEY_SIMPLEX, 1.5, colour, 3,
                cv::LINE_AA);
    return page;
}

TEST(SplitLayers, OfWhitePaperAreNothing) {
    const auto layers = splitLayers(cv::Mat(800, 600, CV_8UC3, kWhite), 200);
    ASSERT_TRUE(layers);
    EXPECT_TRUE(layers->background.empty());
    EXPECT_TRUE(layers->inks.empty());
}

TEST(SplitLayers, OfAGreyPageAreThoseOfItsColours) {
    const cv::Mat grey = withText(cv::Mat(400, 600, CV_8UC1, kWhite), cv::Scalar::all(30));
    cv::Mat colour;
    cv::cvtColor(grey, colour, cv::COLOR_GRAY2BGR);
    const auto ofGrey = splitLayers(grey, 200);
    const auto ofColour = splitLayers(colour, 200);
    ASSERT_TRUE(ofGrey && ofColour);
    ASSERT_EQ(ofGrey->inks.size(), 1U);
    ASSERT_EQ(ofColour->inks.size(), 1U);
    EXPECT_EQ(cv::norm(ofGrey->inks[0].mask, ofColour->inks[0].mask, cv::NORM_INF), 0);
    EXPECT_GT(cv::countNonZero(ofGrey->inks[0].mask), 1000);
}

TEST(SplitLayers, TakePagesOfAnySize) {
    for (const cv::Size size :
         {cv::Size(1, 1), cv::Size(1, 700), cv::Size(900, 1), cv::Size(5, 3)}) {
        for (const int type : {CV_8UC1, CV_8UC3}) {
            for (const int level : {0, 128, 255}) {
                const cv::Mat page(size, type, cv::Scalar::all(level));
                EXPECT_NO_THROW(splitLayers(page, 200)) << size << level;
            }
        }
    }
}

TEST(SplitLayers, TakeAnyDensity) {
    const cv::Mat page = withText(cv::Mat(400, 600, CV_8UC3, kWhite), {0, 0, 0});
    for (const double dpi : {0.0, 1.0, 72.0, 1e9}) {
        EXPECT_NO_THROW(splitLayers(page, dpi)) << dpi;
    }
}

TEST(SplitLayers, AreNoneOfPagesTooCoarseForSharpPrint) {
    const cv::Mat page = withText(cv::Mat(400, 600, CV_8UC3, kWhite), {0, 0, 0});
    EXPECT_FALSE(splitLayers(page, 75));
    EXPECT_TRUE(splitLayers(page, 150));
}

TEST(SplitLayers, AreNoneOfABlackAndWhitePageThatIsSmallerAsItIs) {
    for (const int type : {CV_8UC1, CV_8UC3}) {
        const cv::Mat page = withText(cv::Mat(600, 900, type, kWhite), cv::Scalar::all(0));
        EXPECT_TRUE(splitLayers(page, 150));
        EXPECT_FALSE(splitLayers(page > 127, 150));
    }
}

TEST(SplitLayers, LeaveOutTheGrainOfPaper) {
    cv::Mat page(600, 900, CV_8UC3, kWhite);
    withText(page, {30, 30, 30});
    for (int x = 20; x < 880; x += 12) {
        cv::rectangle(page, {x, 400}, {x + 2, 402}, cv::Scalar::all(225), cv::FILLED);
    }
    const auto layers = splitLayers(page, 200);
    ASSERT_TRUE(layers);
    ASSERT_EQ(layers->inks.size(), 1U);
    const cv::Mat below =
        layers->inks[0].mask.rowRange(layers->inks[0].mask.rows / 2, layers->inks[0].mask.rows);
    EXPECT_EQ(cv::countNonZero(below), 0);
}

TEST(SplitLayers, AreNoneOfOtherTypes) {
    EXPECT_FALSE(splitLayers(cv::Mat(), 200));
    EXPECT_FALSE(splitLayers(cv::Mat(100, 100, CV_16UC3, kWhite), 200));
    EXPECT_FALSE(splitLayers(cv::Mat(100, 100, CV_8UC4, kWhite), 200));
}

TEST(SplitLayers, AreNoneOfAPhotograph) {
    cv::RNG random(3);
    EXPECT_FALSE(splitLayers(virtualcam::drawPhotograph({1600, 1200}, random), 200));
}

TEST(SplitLayers, KeepStampsOverPrintInTheirColour) {
    cv::Mat page(600, 900, CV_8UC3, kWhite);
    withText(page, {30, 30, 30});
    cv::ellipse(page, {300, 300}, {180, 80}, 0, 0, 360, {30, 30, 200}, 6, cv::LINE_AA);
    cv::line(page, {60, 300}, {700, 300}, {30, 30, 30}, 4, cv::LINE_AA);
    const auto layers = splitLayers(page, 200);
    ASSERT_TRUE(layers);
    const cv::Mat shown = flattened(*layers, page.size());
    const cv::Vec3b stamp = shown.at<cv::Vec3b>(220, 300);
    EXPECT_NEAR(stamp[2], 200, 25);
    EXPECT_LT(stamp[0], 70);
    const cv::Vec3b line = shown.at<cv::Vec3b>(300, 620);
    EXPECT_LT(line[2], 70);
}

TEST(SplitLayers, KeepPencil) {
    cv::Mat page(600, 900, CV_8UC3, kWhite);
    cv::line(page, {60, 100}, {700, 480}, cv::Scalar::all(205), 2, cv::LINE_AA);
    const auto layers = splitLayers(page, 200);
    ASSERT_TRUE(layers);
    ASSERT_EQ(layers->inks.size(), 1U);
    EXPECT_NEAR(layers->inks[0].colour[1], 205, 20);
    EXPECT_GT(cv::countNonZero(layers->inks[0].mask), 900);
}

TEST(SplitLayers, KeepLargeLettersWhole) {
    cv::Mat page(900, 900, CV_8UC3, kWhite);
    cv::rectangle(page, {300, 100}, {360, 700}, {40, 40, 40}, cv::FILLED); // 60 pixels are 7.6 mm
    const auto layers = splitLayers(page, 200);
    ASSERT_TRUE(layers);
    EXPECT_TRUE(layers->background.empty());
    const cv::Mat shown = flattened(*layers, page.size());
    EXPECT_LT(cv::norm(shown, page, cv::NORM_L1) / static_cast<double>(page.total()), 1);
}

} // namespace

} // namespace doccam::test
