#include "docimage/contour_sequences.h"
#include "docimage/outline_search.h"

#include <gmock/gmock.h>
#include <opencv2/core/core_c.h>
#include <opencv2/imgproc.hpp>
#include <opencv2/imgproc/imgproc_c.h>

namespace doccam {
namespace {

using testing::ElementsAre;
using testing::Optional;
using testing::SizeIs;

cv::Mat noise(cv::Size size, int type) {
    cv::Mat picture(size, type);
    cv::RNG(5).fill(picture, cv::RNG::UNIFORM, 0, 256);
    return picture;
}

bool sameBytes(const cv::Mat& a, const cv::Mat& b) {
    return a.size() == b.size() && a.type() == b.type() && cv::norm(a, b, cv::NORM_INF) == 0;
}

TEST(ReducedGrey, IsAQuarterAsLargeWithRestsCutOff) {
    EXPECT_EQ(reducedGrey(cv::Mat(483, 642, CV_8UC3)).size(), cv::Size(160, 120));
    EXPECT_EQ(reducedGrey(cv::Mat(7, 4, CV_8UC3)).size(), cv::Size(1, 1));
}

TEST(ReducedGrey, TakesTheFrameAsRedFirst) {
    EXPECT_EQ(reducedGrey(cv::Mat(8, 8, CV_8UC3, cv::Scalar(255, 0, 0))).at<std::uint8_t>(0), 76);
    EXPECT_EQ(reducedGrey(cv::Mat(8, 8, CV_8UC3, cv::Scalar(0, 0, 255))).at<std::uint8_t>(0), 29);
}

TEST(ReducedGrey, IsWhatTheCInterfaceGives) {
    for (const cv::Size size : {cv::Size(64, 48), cv::Size(67, 49), cv::Size(130, 71)}) {
        cv::Mat frame = noise(size, CV_8UC3);
        cv::Mat reduced(size.height / 4, size.width / 4, CV_8UC3);
        cv::Mat grey(reduced.size(), CV_8UC1);
        CvMat frameView = cvMat(frame), reducedView = cvMat(reduced), greyView = cvMat(grey);
        cvResize(&frameView, &reducedView, CV_INTER_AREA);
        cvCvtColor(&reducedView, &greyView, CV_RGB2GRAY);
        EXPECT_TRUE(sameBytes(reducedGrey(frame), grey)) << size;
    }
}

TEST(BackgroundOf, IsWhatTheCInterfaceGivesUpToTheEdge) {
    cv::Mat grey = noise({70, 45}, CV_8UC1);
    cv::Mat expected(grey.size(), CV_8UC1);
    CvMat greyView = cvMat(grey), expectedView = cvMat(expected);
    cvSmooth(&greyView, &expectedView, CV_GAUSSIAN, 21, 21, 0, 0);
    EXPECT_TRUE(sameBytes(backgroundOf(grey), expected));
}

TEST(LiftedLevel, AddsSevenTenthsOfTheBackgroundsDistanceFrom127) {
    EXPECT_EQ(liftedLevel(100, 127), 100);
    EXPECT_EQ(liftedLevel(100, 27), 169);
    EXPECT_EQ(liftedLevel(200, 227), 130);
}

TEST(LiftedLevel, CutsFractionsOff) {
    EXPECT_EQ(liftedLevel(50, 126), 50);
    EXPECT_EQ(liftedLevel(50, 128), 49);
}

// Seven tenths in single precision: ten times that is just under 7.
TEST(LiftedLevel, ReckonsInSinglePrecisionSevenTenths) {
    EXPECT_EQ(liftedLevel(0, 117), 6);
}

TEST(LiftedLevel, IsNeverNegative) {
    EXPECT_EQ(liftedLevel(0, 255), 0);
    EXPECT_EQ(liftedLevel(89, 255), 0);
    EXPECT_EQ(liftedLevel(90, 255), 0);
    EXPECT_EQ(liftedLevel(91, 255), 1);
}

TEST(LiftedLevel, WrapsAroundAbove255) {
    EXPECT_EQ(liftedLevel(255, 127), 255);
    EXPECT_EQ(liftedLevel(255, 125), 0);
    EXPECT_EQ(liftedLevel(255, 0), 87);
}

TEST(LiftedContrast, TurnsAThinWhiteLineOnADarkDeskDark) {
    cv::Mat grey(60, 60, CV_8UC1, cv::Scalar(0));
    grey.col(30).setTo(255);
    const cv::Mat lifted = liftedContrast(grey, backgroundOf(grey));
    EXPECT_LT(lifted.at<std::uint8_t>(30, 30), lifted.at<std::uint8_t>(30, 2));
}

TEST(IndexOfLargest, TakesTheFirstOfEqualAreas) {
    EXPECT_THAT(indexOfLargest({500, 900, 900, 401}), Optional(std::size_t{1}));
}

TEST(IndexOfLargest, IsNoneForAnEmptyList) {
    EXPECT_EQ(indexOfLargest({}), std::nullopt);
}

TEST(FrameCorners, AreFourTimesThoseOfTheReducedOutline) {
    const SheetCorners corners =
        wholePixels(frameCorners({{20, 50}, {50, 20}, {80, 50}, {50, 80}}));
    EXPECT_NEAR(corners[0].x, 200, 1);
    EXPECT_NEAR(corners[0].y, 320, 1);
    EXPECT_NEAR(corners[1].x, 80, 1);
    EXPECT_NEAR(corners[1].y, 200, 1);
}

TEST(WholePixels, CutsFractionsOffTowardZero) {
    const SheetCorners corners =
        wholePixels({cv::Point2f(-1.75F, 3.99F), {-0.5F, 0.5F}, {7, -7}, {2.5F, -3.01F}});
    EXPECT_THAT(corners,
                ElementsAre(cv::Point(-1, 3), cv::Point(0, 0), cv::Point(7, -7), cv::Point(2, -3)));
}

TEST(OuterContours, TreatTheFrameOfAWhitePictureAsBlack) {
    cv::Mat white(120, 160, CV_8UC1, cv::Scalar(255));
    const OuterContours contours(white);
    ASSERT_THAT(contours.list(), SizeIs(1));
    EXPECT_EQ(enclosedArea(*contours.list()[0]), 18369);
    EXPECT_EQ(cv::boundingRect(contourPoints(*contours.list()[0])), cv::Rect(1, 1, 158, 118));
    EXPECT_EQ(white.at<std::uint8_t>(0, 80), 0);
}

TEST(OuterContours, ListTheLowestFirstAndNoHoles) {
    cv::Mat picture = cv::Mat::zeros(100, 100, CV_8UC1);
    picture(cv::Rect(10, 10, 30, 30)).setTo(255);
    picture(cv::Rect(20, 20, 10, 10)).setTo(0);
    picture(cv::Rect(50, 60, 20, 20)).setTo(255);
    const OuterContours contours(picture);
    ASSERT_THAT(contours.list(), SizeIs(2));
    EXPECT_EQ(cv::boundingRect(contourPoints(*contours.list()[0])), cv::Rect(50, 60, 20, 20));
    EXPECT_EQ(enclosedArea(*contours.list()[1]), 29 * 29);
    EXPECT_THAT(contourPoints(*contours.list()[1]), SizeIs(4 * 29));
}

TEST(OuterContours, AreNoneOnABlackPicture) {
    cv::Mat black = cv::Mat::zeros(10, 10, CV_8UC1);
    EXPECT_THAT(OuterContours(black).list(), SizeIs(0));
}

} // namespace
} // namespace doccam
