// The search on the reduced copy of a frame, step by step, against OpenCV's steps.
#include "cleaning_pictures.h"
#include "docimage/sheet/sheet_search.h"
#include "docimage/sheet/sheet_search_kernels.h"
#include "plain/outline.h"
#include "support/same_picture.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace doccam {
namespace {

using test::isSamePicture;

TEST(LiftedLevel, AddsSevenTenthsOfTheBackgroundsDistanceFrom127) {
    EXPECT_EQ(flatFieldedLevel(100, 127), 100);
    EXPECT_EQ(flatFieldedLevel(100, 27), 169);
    EXPECT_EQ(flatFieldedLevel(200, 227), 130);
}

TEST(LiftedLevel, TruncatesFractions) {
    EXPECT_EQ(flatFieldedLevel(50, 126), 50);
    EXPECT_EQ(flatFieldedLevel(50, 128), 49);
}

TEST(LiftedLevel, IsNeverNegative) {
    EXPECT_EQ(flatFieldedLevel(0, 255), 0);
    EXPECT_EQ(flatFieldedLevel(90, 255), 0);
    EXPECT_EQ(flatFieldedLevel(91, 255), 1);
}

TEST(LiftedLevel, WrapsAroundAbove255) {
    EXPECT_EQ(flatFieldedLevel(255, 127), 255);
    EXPECT_EQ(flatFieldedLevel(255, 125), 0);
    EXPECT_EQ(flatFieldedLevel(255, 0), 87);
}

// Ten times 0.7f is just under 7.
TEST(LiftedLevel, EqualsTheFractionsForAllLevels) {
    for (int grey = 0; grey < 256; ++grey) {
        for (int background = 0; background < 256; ++background) {
            const double sum = static_cast<double>(0.7F) * (127 - background) + grey;
            const int level = std::max(static_cast<int>(sum), 0);
            ASSERT_EQ(flatFieldedLevel(grey, background), static_cast<unsigned char>(level))
                << grey << ' ' << background;
        }
    }
}

class EachSheetSearchKernel : public testing::TestWithParam<SheetSearchKernels> {};

std::string named(const testing::TestParamInfo<SheetSearchKernels>& rows) {
    std::string name = rows.param.instructionSet;
    std::erase(name, '-');
    return name;
}

INSTANTIATE_TEST_SUITE_P(SheetSearchKernels, EachSheetSearchKernel,
                         testing::ValuesIn(allSheetSearchKernels()), named);

TEST_P(EachSheetSearchKernel, ReducesAsOpenCvDoes) {
    for (int count = 1; count <= 150; ++count) {
        const cv::Mat frame = test::noise({4 * count, 4}, static_cast<std::uint64_t>(count));
        std::vector<unsigned char> grey(static_cast<std::size_t>(count + 1), 99);
        GetParam().reduceToGrey({frame.ptr(0), frame.ptr(1), frame.ptr(2), frame.ptr(3)}, count,
                                grey.data());
        const cv::Mat expected = plain::reducedGrey(frame);
        ASSERT_TRUE(std::equal(expected.begin<uchar>(), expected.end<uchar>(), grey.begin()))
            << count;
        ASSERT_EQ(grey.back(), 99);
    }
}

// One pixel for each sum of sixteen samples: halves round to even.
TEST_P(EachSheetSearchKernel, RoundsMeansAsOpenCvDoes) {
    constexpr int kSums = 16 * 255 + 1;
    cv::Mat frame(4, 4 * kSums, CV_8UC3);
    for (int sum = 0; sum < kSums; ++sum) {
        for (int i = 0; i < 16; ++i) {
            const int sample = (sum + i) / 16;
            frame.at<cv::Vec3b>(i / 4, 4 * sum + i % 4) =
                cv::Vec3b::all(static_cast<uchar>(sample));
        }
    }
    std::vector<unsigned char> grey(kSums);
    GetParam().reduceToGrey({frame.ptr(0), frame.ptr(1), frame.ptr(2), frame.ptr(3)}, kSums,
                            grey.data());
    const cv::Mat expected = plain::reducedGrey(frame);
    EXPECT_TRUE(std::equal(expected.begin<uchar>(), expected.end<uchar>(), grey.begin()));
}

cv::Mat blurredBy(const SheetSearchKernels& rows, const cv::Mat& grey) {
    cv::Mat padded;
    cv::copyMakeBorder(grey, padded, 0, 0, kBlurReach, kBlurReach, cv::BORDER_REPLICATE);
    cv::Mat sums(grey.size(), CV_16UC1);
    for (int y = 0; y < grey.rows; ++y) {
        rows.blurAlong(padded.ptr(y, kBlurReach), grey.cols, sums.ptr<std::uint16_t>(y));
    }
    return sums;
}

TEST_P(EachSheetSearchKernel, FlattenAsOpenCvsBlurDoes) {
    for (const cv::Size size : {cv::Size(1, 1), {2, 3}, {9, 40}, {31, 30}, {64, 21}, {151, 37}}) {
        cv::Mat grey(size, CV_8UC1);
        cv::RNG(5).fill(grey, cv::RNG::UNIFORM, 0, 256);
        const cv::Mat expected = plain::flatFielded(grey);
        const cv::Mat sums = blurredBy(GetParam(), grey);
        for (int y = 0; y < grey.rows; ++y) {
            SheetSearchKernels::SumRows rows;
            for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
                const int row = std::clamp(y + i - kBlurReach, 0, grey.rows - 1);
                rows[static_cast<std::size_t>(i)] = sums.ptr<std::uint16_t>(row);
            }
            GetParam().flatField(rows, grey.cols, grey.ptr(y));
        }
        ASSERT_TRUE(isSamePicture(grey, expected)) << size;
    }
}

// Noise changes its outlines with almost every pixel's level.
void expectPlainOutlines(SheetSearch& search, const cv::Mat& frame) {
    cv::Mat bright = plain::flatFielded(plain::reducedGrey(frame));
    cv::threshold(bright, bright, 0, 1, cv::THRESH_BINARY | cv::THRESH_OTSU);
    cv::rectangle(bright, {{}, bright.size()}, cv::Scalar(0));
    std::vector<std::vector<cv::Point>> expected;
    cv::findContours(bright, expected, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    std::reverse(expected.begin(), expected.end());
    const OuterOutlines& outlines = search.outlinesIn(frame);
    ASSERT_EQ(outlines.count(), expected.size()) << frame.size();
    for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_TRUE(std::ranges::equal(outlines[i], expected[i])) << frame.size() << ' ' << i;
    }
}

TEST(SheetSearch, FindsThePlainStepsOutlinesInEverySize) {
    SheetSearch search;
    for (int width = 4; width <= 160; ++width) {
        for (const int height : {4, 5, 18, 43, 48, 121}) {
            expectPlainOutlines(search,
                                test::noise({width, height}, static_cast<std::uint64_t>(width)));
        }
    }
}

TEST(SheetSearch, TakesTheFrameAsRedFirst) {
    cv::Mat frame(100, 100, CV_8UC3, cv::Scalar(0, 0, 255));
    frame(cv::Rect(40, 40, 20, 20)).setTo(cv::Scalar(255, 0, 0));
    EXPECT_EQ(SheetSearch().outlinesIn(frame)[0].front(), cv::Point(10, 10));
}

TEST(SheetSearch, SearchesPartOfALargerFrame) {
    SheetSearch search;
    expectPlainOutlines(search, test::noise({500, 300}, 3)(cv::Rect(33, 21, 400, 240)));
}

// The blur around the line lifts the desk far from it above the desk beside it.
TEST(SheetSearch, FlattensAThinWhiteLineOnADarkDeskAsThePlainStepsDo) {
    cv::Mat frame(240, 240, CV_8UC3, cv::Scalar::all(0));
    frame.colRange(120, 124).setTo(cv::Scalar::all(255));
    SheetSearch search;
    expectPlainOutlines(search, frame);
}

TEST(SheetSearch, ThrowsForAFrameUnderFourPixels) {
    EXPECT_THROW(SheetSearch().outlinesIn(cv::Mat(3, 100, CV_8UC3)), cv::Exception);
    EXPECT_THROW(SheetSearch().outlinesIn(cv::Mat()), cv::Exception);
}

} // namespace
} // namespace doccam
