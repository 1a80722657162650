#include "docimage/sheet/edge_overlay.h"
#include "docimage/sheet/min_area_rectangle.h"
#include "state/library_state.h"
#include "support/same_picture.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <opencv2/core/core_c.h>
#include <opencv2/imgproc.hpp>
#include <opencv2/imgproc/imgproc_c.h>

#include <algorithm>

namespace doccam {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::SizeIs;

constexpr int kNoFlag = 0;
constexpr int kUntouched = -12345;

class DrawingEdgeTest : public testing::Test {
  protected:
    DrawingEdgeTest() { state().sheet.CutPoint.fill(kUntouched); }

    ~DrawingEdgeTest() override { state().sheet.CutPoint.fill(0); }

    static std::vector<int> corners() {
        return {state().sheet.CutPoint.begin(), state().sheet.CutPoint.begin() + 8};
    }

    static int detect(cv::Mat& frame, int drawFlag = kNoFlag) {
        return DrawingEdge(frame.data, frame.cols, frame.rows, drawFlag);
    }
};

cv::Mat desk(cv::Size size) {
    return {size, CV_8UC3, cv::Scalar::all(0)};
}

void lay(cv::Mat& frame, cv::Rect paper) {
    frame(paper).setTo(cv::Scalar::all(200));
}

cv::Mat deskWithSheet() {
    cv::Mat frame = desk({640, 480});
    lay(frame, {160, 120, 320, 240});
    return frame;
}

// In the reduced picture the sheet spans pixels 40 to 119 and 30 to 89.
TEST_F(DrawingEdgeTest, KeepsTheCornersOfASheetInFramePixels) {
    cv::Mat frame = deskWithSheet();
    EXPECT_EQ(detect(frame), 0);
    EXPECT_THAT(corners(), ElementsAre(476, 356, 160, 356, 160, 120, 476, 120));
    EXPECT_EQ(state().sheet.CutPoint[8], kUntouched);
}

TEST_F(DrawingEdgeTest, FindsItsCornersAgainAfterThoseOfThePageEngine) {
    cv::Mat frame = deskWithSheet();
    detect(frame);
    const std::vector<int> own = corners();
    storeEngineCorners({{{9, 9}, {1, 9}, {1, 1}, {9, 1}}}, state().sheet);
    storeEngineCorners({{{8, 8}, {1, 8}, {1, 1}, {8, 1}}}, state().sheet);
    EXPECT_THAT(corners(), ElementsAre(8, 8, 1, 8, 1, 1, 8, 1));
    restoreCorners(state().sheet);
    EXPECT_EQ(corners(), own);
}

TEST_F(DrawingEdgeTest, PrefersCornersFoundAfterThoseOfThePageEngine) {
    storeEngineCorners({{{9, 9}, {1, 9}, {1, 1}, {9, 1}}}, state().sheet);
    cv::Mat frame = deskWithSheet();
    detect(frame);
    const std::vector<int> own = corners();
    restoreCorners(state().sheet);
    EXPECT_EQ(corners(), own);
}

TEST_F(DrawingEdgeTest, ReturnsMinus1WithoutAnyOutline) {
    // Two by two reduced pixels: the cleared frame leaves nothing.
    cv::Mat frame(8, 8, CV_8UC3, cv::Scalar::all(128));
    const cv::Mat before = frame.clone();
    EXPECT_EQ(detect(frame, 1), -1);
    EXPECT_THAT(corners(), Each(kUntouched));
    EXPECT_TRUE(test::isSamePicture(frame, before));
}

TEST_F(DrawingEdgeTest, ReturnsMinus2WhenAUniformFrameIsTooSmallForASheet) {
    // The outline of 18 x 18 reduced pixels encloses 17 x 17.
    cv::Mat frame(80, 80, CV_8UC3, cv::Scalar::all(128));
    const cv::Mat before = frame.clone();
    EXPECT_EQ(detect(frame, 1), -2);
    EXPECT_THAT(corners(), Each(kUntouched));
    EXPECT_TRUE(test::isSamePicture(frame, before));
}

TEST_F(DrawingEdgeTest, TakesALargeUniformFrameWithoutItsEdgeForASheet) {
    cv::Mat frame(480, 640, CV_8UC3, cv::Scalar::all(128));
    EXPECT_EQ(detect(frame), 0);
    EXPECT_THAT(corners(), ElementsAre(632, 472, 4, 472, 4, 4, 632, 4));
}

TEST_F(DrawingEdgeTest, RefusesAnAreaOf400ReducedPixels) {
    cv::Mat frame = desk({640, 480});
    lay(frame, {200, 200, 84, 84});
    EXPECT_EQ(detect(frame, 1), -2);
    EXPECT_THAT(corners(), Each(kUntouched));
}

TEST_F(DrawingEdgeTest, AcceptsTheNextLargerArea) {
    cv::Mat frame = desk({640, 480});
    lay(frame, {200, 200, 88, 84});
    EXPECT_EQ(detect(frame), 0);
    EXPECT_THAT(corners(), ElementsAre(284, 280, 200, 280, 200, 200, 284, 200));
}

TEST_F(DrawingEdgeTest, TakesTheFirstOfTwoEqualSheets) {
    cv::Mat frame = desk({640, 480});
    lay(frame, {80, 40, 200, 120});
    lay(frame, {360, 280, 200, 120});
    EXPECT_EQ(detect(frame), 0);
    EXPECT_THAT(corners(), ElementsAre(556, 396, 360, 396, 360, 280, 556, 280));
}

TEST_F(DrawingEdgeTest, TakesTheLargestSheetWhereverItLies) {
    cv::Mat frame = desk({640, 480});
    lay(frame, {80, 40, 240, 160});
    lay(frame, {360, 280, 200, 120});
    EXPECT_EQ(detect(frame), 0);
    EXPECT_THAT(corners(), ElementsAre(316, 196, 80, 196, 80, 40, 316, 40));
}

TEST_F(DrawingEdgeTest, DrawsNothingForAFlagOtherThan1) {
    cv::Mat frame = deskWithSheet();
    const cv::Mat before = frame.clone();
    for (const int flag : {0, 2, -1}) {
        state().sheet.CutPoint.fill(kUntouched);
        EXPECT_EQ(detect(frame, flag), 0);
        EXPECT_NE(state().sheet.CutPoint[0], kUntouched) << flag;
    }
    EXPECT_TRUE(test::isSamePicture(frame, before));
}

TEST_F(DrawingEdgeTest, KeepsTheLastCornersWhenTheSheetIsGone) {
    cv::Mat frame = deskWithSheet();
    ASSERT_EQ(detect(frame), 0);
    const std::vector<int> before = corners();
    cv::Mat tooSmall(80, 80, CV_8UC3, cv::Scalar::all(128));
    ASSERT_EQ(detect(tooSmall), -2);
    EXPECT_THAT(corners(), ElementsAreArray(before));
}

TEST_F(DrawingEdgeTest, DrawsAGreenOutlineSixPixelsWide) {
    cv::Mat frame = deskWithSheet();
    cv::Mat expected = frame.clone();
    ASSERT_EQ(detect(frame, 1), 0);
    EXPECT_EQ(frame.at<cv::Vec3b>(120, 300), cv::Vec3b(0, 255, 0));
    EXPECT_EQ(frame.at<cv::Vec3b>(128, 300), cv::Vec3b(200, 200, 200));
    CvMat view = cvMat(expected);
    const CvPoint2D32f points[] = {cvPoint2D32f(476, 356), cvPoint2D32f(160, 356),
                                   cvPoint2D32f(160, 120), cvPoint2D32f(476, 120)};
    for (std::size_t i = 0; i < 4; ++i) {
        cvLine(&view, cvPointFrom32f(points[i]), cvPointFrom32f(points[(i + 1) % 4]),
               cvScalar(0, 255, 0, 0), 6, 8, 0);
    }
    EXPECT_TRUE(test::isSamePicture(frame, expected));
}

TEST_F(DrawingEdgeTest, FindsTheTiltedSheetWithinOneReducedPixel) {
    for (int degrees = -85; degrees <= 85; degrees += 10) {
        SCOPED_TRACE(degrees);
        cv::Mat frame = desk({640, 480});
        const cv::RotatedRect sheet({320, 240}, {300, 200}, static_cast<float>(degrees));
        const auto outline = boxCorners(sheet);
        const std::vector<cv::Point> polygon(outline.begin(), outline.end());
        cv::fillConvexPoly(frame, polygon, cv::Scalar::all(200));
        ASSERT_EQ(detect(frame), 0);
        for (std::size_t i = 0; i < 4; ++i) {
            const cv::Point2f found(
                cv::Point(state().sheet.CutPoint[2 * i], state().sheet.CutPoint[2 * i + 1]));
            const bool near = std::any_of(outline.begin(), outline.end(), [&](cv::Point2f corner) {
                return cv::norm(found - corner) < 8;
            });
            EXPECT_TRUE(near) << found;
        }
    }
}

TEST_F(DrawingEdgeTest, IgnoresPixelsPastAMultipleOfFour) {
    cv::Mat frame = desk({643, 482});
    lay(frame, {160, 120, 320, 240});
    EXPECT_EQ(detect(frame, 1), 0);
    EXPECT_NEAR(state().sheet.CutPoint[0], 476, 4);
}

TEST_F(DrawingEdgeTest, RefusesNullAndFramesUnderFourPixels) {
    std::vector<unsigned char> pixels(640 * 3 * 3);
    EXPECT_EQ(DrawingEdge(nullptr, 640, 480, 1), -1);
    EXPECT_EQ(DrawingEdge(pixels.data(), 640, 3, 1), -1);
    EXPECT_EQ(DrawingEdge(pixels.data(), 3, 640, 1), -1);
    EXPECT_EQ(DrawingEdge(pixels.data(), 0, 0, 1), -1);
    EXPECT_EQ(DrawingEdge(pixels.data(), -640, -480, 1), -1);
    EXPECT_THAT(corners(), Each(kUntouched));
}

TEST_F(DrawingEdgeTest, FindsNothingInTheSmallestFrames) {
    for (int side = 4; side < 12; ++side) {
        cv::Mat frame(side, side, CV_8UC3, cv::Scalar::all(200));
        EXPECT_EQ(detect(frame, 1), -1) << side;
    }
}

} // namespace
} // namespace doccam
