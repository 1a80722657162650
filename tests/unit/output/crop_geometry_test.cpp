#include "output/still/crop_geometry.h"

#include <gmock/gmock.h>

namespace doccam {
namespace {

using testing::ElementsAre;

const cv::Size kFrameSize(640, 480);

TEST(FitIntoFrame, MakesRoomForTheLastNotTheFarthestCornerBeyondASide) {
    const FittedCorners fitted =
        fitIntoFrame({{{-10, 5}, {300, -4}, {310, 400}, {-2, 410}}}, kFrameSize);
    EXPECT_EQ(fitted.borders.left, 2);
    EXPECT_EQ(fitted.borders.right, 0);
    EXPECT_EQ(fitted.borders.top, 4);
    EXPECT_EQ(fitted.borders.bottom, 0);
    EXPECT_THAT(fitted.corners, ElementsAre(cv::Point(-8, 9), cv::Point(302, 0),
                                            cv::Point(312, 404), cv::Point(0, 414)));
}

TEST(FitIntoFrame, LeavesCornersInsideTheFrameAlone) {
    const SheetCorners corners{{{0, 0}, {639, 0}, {639, 479}, {0, 479}}};
    const FittedCorners fitted = fitIntoFrame(corners, kFrameSize);
    EXPECT_EQ(fitted.borders.left + fitted.borders.right, 0);
    EXPECT_EQ(fitted.borders.top + fitted.borders.bottom, 0);
    EXPECT_EQ(fitted.corners, corners);
}

TEST(FitIntoFrame, AddsNoBorderForACornerExactlyAtTheWidthOrHeight) {
    const FittedCorners fitted =
        fitIntoFrame({{{640, 10}, {630, 480}, {10, 470}, {20, 5}}}, kFrameSize);
    EXPECT_EQ(fitted.borders.right, 0);
    EXPECT_EQ(fitted.borders.bottom, 0);
}

TEST(FitIntoFrame, TakesTheLastCornerBeyondTheRightAndLowerSide) {
    const FittedCorners fitted =
        fitIntoFrame({{{700, 10}, {641, 500}, {10, 483}, {20, 5}}}, kFrameSize);
    EXPECT_EQ(fitted.borders.right, 1);
    EXPECT_EQ(fitted.borders.bottom, 3);
}

TEST(FitIntoFrame, MeasuresTheRightAndLowerSideAfterTheShift) {
    const FittedCorners fitted =
        fitIntoFrame({{{-5, -7}, {638, 476}, {10, 20}, {20, 30}}}, kFrameSize);
    EXPECT_EQ(fitted.borders.left, 5);
    EXPECT_EQ(fitted.borders.right, 3);
    EXPECT_EQ(fitted.borders.top, 7);
    EXPECT_EQ(fitted.borders.bottom, 3);
}

TEST(EnlargedBox, IsFourPixelsWiderAndHigher) {
    EXPECT_EQ(enlargedBox({10, 20, 300, 200}, kFrameSize), cv::Rect(10, 20, 304, 204));
}

TEST(EnlargedBox, EndsAtThePicturesEdge) {
    EXPECT_EQ(enlargedBox({338, 278, 300, 200}, kFrameSize), cv::Rect(338, 278, 302, 202));
    EXPECT_EQ(enlargedBox({336, 276, 300, 200}, kFrameSize), cv::Rect(336, 276, 304, 204));
}

TEST(EnlargedBox, KeepsAStartOutsideThePicture) {
    EXPECT_EQ(enlargedBox({-8, -1, 300, 200}, kFrameSize), cv::Rect(-8, -1, 304, 204));
}

TEST(CentredPage, HasSidesInStepsOfFourPlusFour) {
    EXPECT_EQ(centredPage({301, 203}, kFrameSize), cv::Rect(169, 138, 304, 204));
    EXPECT_EQ(centredPage({300, 200}, kFrameSize), cv::Rect(170, 140, 304, 204));
}

TEST(CentredPage, EndsAtThePicturesEdge) {
    EXPECT_EQ(centredPage({400, 300}, {404, 304}), cv::Rect(2, 2, 402, 302));
    EXPECT_EQ(centredPage({400, 300}, {403, 303}), cv::Rect(1, 1, 402, 302));
}

TEST(CentredPage, StartsOutsideAPictureSmallerThanThePage) {
    EXPECT_EQ(centredPage({405, 303}, {400, 300}), cv::Rect(-2, -1, 402, 301));
}

TEST(InStepsOfFour, RoundsDown) {
    EXPECT_EQ(inStepsOfFour({419, 320}), cv::Size(416, 320));
    EXPECT_EQ(inStepsOfFour({3, 4}), cv::Size(0, 4));
}

} // namespace
} // namespace doccam
