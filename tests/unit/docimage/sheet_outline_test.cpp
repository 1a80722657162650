// The work plane's memory layout, and the outlines drawn into it.
#include "cleaning_pictures.h"
#include "docimage/clean/sheet_outline.h"
#include "docimage/pixels/work_plane.h"
#include "support/same_picture.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <algorithm>

namespace {

using doccam::WorkPlane;
using namespace doccam::test;

WorkPlane sheetOutline(const cv::Mat& picture) {
    return doccam::sheetOutline(doccam::greyOf(picture));
}

TEST(WorkPlane, HasRowsPaddedToAMultipleOfFour) {
    for (const auto& [width, step] : {std::pair{1, 4}, {4, 4}, {5, 8}, {6, 8}, {7, 8}, {8, 8}}) {
        EXPECT_EQ(WorkPlane({width, 2}).rows().step[0], static_cast<std::size_t>(step)) << width;
    }
}

TEST(WorkPlane, ReadsPaddingAsPartOfTheFollowingRow) {
    WorkPlane plane({3, 3});
    plane.rows().row(0).setTo(1);
    plane.rows().row(1).setTo(2);
    plane.rows().row(2).setTo(3);
    const int expected[3][3] = {{1, 1, 1}, {0, 2, 2}, {2, 0, 3}};
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(plane.unpaddedRow(y)[x], expected[y][x]) << x << ' ' << y;
        }
    }
}

TEST(WorkPlane, IsBlackWhenCleared) {
    WorkPlane plane({5, 4});
    plane.clear();
    EXPECT_EQ(cv::countNonZero(plane.rows()), 0);
    EXPECT_EQ(plane.unpaddedRow(3)[4], 0);
}

TEST(WorkPlane, HasBlackPadding) {
    for (int width = 1; width <= 8; ++width) {
        const WorkPlane plane({width, 3});
        for (int y = 0; y < 3; ++y) {
            const uchar* const row = plane.rows().ptr(y);
            EXPECT_TRUE(std::all_of(row + width, row + plane.rows().step[0],
                                    [](uchar byte) { return byte == 0; }));
        }
    }
}

TEST(SheetOutline, IsThreePixelsWideAroundTheSheetsEdge) {
    const cv::Rect sheet(20, 30, 240, 150);
    const auto outline = sheetOutline(sheetOnDesk({300, 220}, sheet, kPaper));
    cv::Mat expected(220, 300, CV_8UC1, cv::Scalar(0));
    expected(cv::Rect(19, 29, 242, 152)).setTo(255);
    expected(cv::Rect(22, 32, 236, 146)).setTo(0);
    // Rounded line ends omit the four outermost pixels.
    for (const int y : {29, 180}) {
        expected.at<uchar>(y, 19) = expected.at<uchar>(y, 260) = 0;
    }
    EXPECT_TRUE(isSamePicture(outline.rows(), expected));
}

TEST(SheetOutline, OfASheetThatFillsThePictureRunsAlongTheEdge) {
    const auto outline = sheetOutline(sheetOnDesk({300, 220}, {0, 0, 300, 220}, kPaper));
    cv::Mat expected(220, 300, CV_8UC1, cv::Scalar(255));
    expected(cv::Rect(3, 3, 294, 214)).setTo(0);
    for (const int y : {0, 219}) {
        expected.at<uchar>(y, 0) = expected.at<uchar>(y, 299) = 0;
    }
    EXPECT_TRUE(isSamePicture(outline.rows(), expected));
}

// An outline runs through the centres of the outermost pixels: that of w x h pixels encloses
// (w - 1) x (h - 1).
TEST(SheetOutline, IsDrawnForMoreThanThirtyThousandPixels) {
    const cv::Size size(300, 220);
    const auto at = sheetOutline(sheetOnDesk(size, {10, 10, 201, 151}, kPaper));
    EXPECT_EQ(cv::countNonZero(at.rows()), 0);
    const auto above = sheetOutline(sheetOnDesk(size, {10, 10, 202, 151}, kPaper));
    EXPECT_GT(cv::countNonZero(above.rows()), 0);
}

TEST(SheetOutline, IncludesSmallRegionsOnlyAboveTheLowestLargeOne) {
    cv::Mat picture = sheetOnDesk({300, 240}, {20, 50, 240, 150}, kPaper);
    picture(cv::Rect(100, 10, 20, 20)).setTo(kPaper);
    picture(cv::Rect(100, 215, 20, 20)).setTo(kPaper);
    const auto outline = sheetOutline(picture);
    EXPECT_GT(cv::countNonZero(outline.rows().rowRange(0, 48)), 0);
    EXPECT_EQ(cv::countNonZero(outline.rows().rowRange(202, 240)), 0);
}

TEST(SheetOutline, IgnoresHolesInTheSheet) {
    cv::Mat picture = sheetOnDesk({300, 220}, {20, 30, 240, 150}, kPaper);
    picture(cv::Rect(100, 80, 60, 40)).setTo(kBlackDesk);
    const auto outline = sheetOutline(picture);
    EXPECT_EQ(cv::countNonZero(outline.rows()(cv::Rect(22, 32, 236, 146))), 0);
}

TEST(SheetOutline, IsEmptyForABlackPicture) {
    const auto outline = sheetOutline(cv::Mat(220, 300, CV_8UC3, kBlackDesk));
    EXPECT_EQ(cv::countNonZero(outline.rows()), 0);
}

} // namespace
