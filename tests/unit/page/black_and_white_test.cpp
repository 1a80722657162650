// Pages in black and white.
#include "lit_pages.h"
#include "page/look.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace doccam::page {
namespace {

TEST(BlackAndWhite, HasTwoLevelsAndOneChannel) {
    const cv::Mat bits = blackAndWhite(paperLook(lit(printedPage(), kWarm)));
    ASSERT_EQ(bits.type(), CV_8UC1);
    EXPECT_EQ(cv::countNonZero((bits != 0) & (bits != 255)), 0);
}

TEST(BlackAndWhite, KeepsThinStrokes) {
    cv::Mat print(1200, 900, CV_8UC3, kWhite);
    for (int y = 100; y < 1100; y += 100) {
        cv::line(print, {100, y}, {800, y}, kBlack, 1);
    }
    cv::GaussianBlur(print, print, {0, 0}, 0.8);
    const cv::Mat bits = blackAndWhite(paperLook(lit(print, kWarm)));
    for (int y = 100; y < 1100; y += 100) {
        EXPECT_EQ(cv::countNonZero(bits(cv::Rect(110, y, 680, 1))), 0) << "line " << y;
    }
}

TEST(BlackAndWhite, HasNoSpecksOnNoisyPaper) {
    const cv::Mat print(1200, 900, CV_8UC3, kWhite);
    cv::Mat seen = lit(print, kWarm);
    cv::Mat noise(seen.size(), CV_16SC3);
    cv::RNG(5).fill(noise, cv::RNG::NORMAL, 0, 4);
    cv::add(seen, noise, seen, cv::noArray(), CV_8U);
    const cv::Mat bits = blackAndWhite(paperLook(seen));
    EXPECT_EQ(cv::countNonZero(bits == 0), 0);
}

TEST(BlackAndWhite, HasNoSpecksInFills) {
    // Those next to the tone that parts black from white may be either, in patches.
    for (const int tone : {60, 90, 105, 116, 140, 150, 165, 180, 200, 220}) {
        cv::Mat print(1200, 900, CV_8UC3, kWhite);
        print(cv::Rect(80, 300, 740, 400)).setTo(cv::Scalar::all(tone));
        const cv::Mat bits = blackAndWhite(paperLook(lit(print, kWarm, 0.7)));
        const cv::Rect inner(100, 320, 700, 360);
        const int black = cv::countNonZero(bits(inner) == 0);
        EXPECT_TRUE(black == 0 || black == inner.area()) << black << " black at " << tone;
    }
}

TEST(BlackAndWhite, HasNoLinesAlongTheEdgesOfFills) {
    for (const int tone : {135, 145, 160, 190}) {
        cv::Mat print(1200, 900, CV_8UC3, kWhite);
        print(cv::Rect(80, 300, 740, 400)).setTo(cv::Scalar(170, 215, 230));
        for (int x = 121; x < 700; x += 143) {
            print(cv::Rect(x, 401, 98, 203)).setTo(cv::Scalar::all(tone));
        }
        cv::GaussianBlur(print, print, {0, 0}, 0.8);
        const cv::Mat bits = blackAndWhite(greyPaperLook(lit(print, kWarm, 0.7)));
        EXPECT_EQ(cv::countNonZero(bits == 0), 0) << tone;
    }
}

TEST(BlackAndWhite, HasNoBarsAroundHighlighter) {
    const cv::Scalar markers[] = {{90, 243, 254}, {120, 230, 150}, {200, 170, 250}};
    for (const cv::Scalar& marker : markers) {
        cv::Mat print = printedPage();
        const cv::Mat plain = blackAndWhite(greyPaperLook(lit(print, kWarm)));
        cv::Mat strips(print.size(), CV_8UC3, kWhite);
        for (int y = 90; y < 1000; y += 60) {
            strips(cv::Rect(75, y, 560, 42)).setTo(marker);
        }
        cv::min(print, strips, print);
        const cv::Mat bits = blackAndWhite(greyPaperLook(lit(print, kWarm)));
        const int more = cv::countNonZero((bits == 0) & (plain != 0));
        EXPECT_LE(more, 0.1 * cv::countNonZero(plain == 0)) << marker;
    }
}

TEST(BlackAndWhite, KeepsReversedPrint) {
    cv::Mat print(1200, 900, CV_8UC3, kWhite);
    print(cv::Rect(80, 300, 740, 120)).setTo(cv::Scalar(60, 40, 30));
    cv::putText(print, "White on dark", {110, 380}, cv::FONT_HERSHEY_SIMPLEX, 1.5, kWhite, 3);
    const cv::Mat bits = blackAndWhite(paperLook(lit(print, kWarm)));
    cv::Mat wanted;
    cv::cvtColor(print, wanted, cv::COLOR_BGR2GRAY);
    EXPECT_LE(cv::countNonZero(bits != (wanted > 128)), 0.006 * 740 * 120);
}

TEST(BlackAndWhite, ReadsDarkPrintOnAMidTone) {
    cv::Mat print(1200, 900, CV_8UC3, kWhite);
    print(cv::Rect(80, 300, 740, 120)).setTo(cv::Scalar::all(170));
    cv::putText(print, "Black on grey", {110, 380}, cv::FONT_HERSHEY_SIMPLEX, 1.5, kBlack, 3);
    const cv::Mat bits = blackAndWhite(paperLook(lit(print, kWarm)));
    cv::Mat wanted;
    cv::cvtColor(print, wanted, cv::COLOR_BGR2GRAY);
    const cv::Rect inner(90, 310, 720, 100);
    EXPECT_LE(cv::countNonZero(bits(inner) != (wanted(inner) > 85)), 0.006 * inner.area());
}

} // namespace
} // namespace doccam::page
