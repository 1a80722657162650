#include "state/library_state.h"
#include "still_request.h"
#include "support/printed_text.h"
#include "support/same_picture.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <filesystem>

namespace doccam {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class AutomaticCrop : public testing::Test {
  protected:
    ~AutomaticCrop() override { state().sheet.CutPoint.fill(0); }

    static void setCorners(const std::array<int, 8>& corners) {
        std::copy(corners.begin(), corners.end(), state().sheet.CutPoint.begin());
    }

    // The still as read back from the file, blue first.
    cv::Mat taken(const cv::Mat& frame, int cropMode = kCropToSheet) {
        EXPECT_EQ(capture(path_.data(), test::kFormat, cropMode, frame), 0);
        return cv::imread(path_);
    }

    const test::ScratchFolder folder_;
    std::string path_ = folder_.file("still.png");
};

cv::Mat plainFrame(cv::Scalar redFirst = {40, 120, 200}) {
    return {480, 640, CV_8UC3, redFirst};
}

// A sheet of 400 x 300 pixels at (100, 100), as the outline search leaves an upright one.
constexpr std::array<int, 8> kUpright = {500, 400, 100, 400, 100, 100, 500, 100};

TEST_F(AutomaticCrop, PrintsPathAndGeometry) {
    setCorners(kUpright);
    test::PrintedText printed;
    taken(plainFrame());
    EXPECT_EQ(printed.take(), "capture->path:" + path_ +
                                  "\n"
                                  "AA->img.cols,img.rows: 640,480\r\n"
                                  "BB->img.cols,img.rows: 404,304\r\n"
                                  "cx,cy,cw,ch: 2,2,402,302\r\n");
}

TEST_F(AutomaticCrop, SavesThePageWithItsBorderInStepsOfFour) {
    setCorners(kUpright);
    // Clipped to the turned picture: 402 + 16 by 302 + 16, rounded down.
    EXPECT_EQ(taken(plainFrame()).size(), cv::Size(416, 316));
}

TEST_F(AutomaticCrop, Saves20PixelsMoreThanThePageWhenNothingClipsIt) {
    // Sides of 500 and 300 pixels, leaning by 36.87 degrees.
    setCorners({240, 460, 60, 220, 460, -80, 640, 160});
    const cv::Size size = taken(plainFrame()).size();
    EXPECT_EQ(size, cv::Size(520, 320));
}

TEST_F(AutomaticCrop, IsNotEnlargedInASessionOfTheLargestSize) {
    setCorners(kUpright);
    state().session.isInsert1000M = true;
    EXPECT_EQ(taken(plainFrame()).size(), cv::Size(416, 316));
    state().session.isInsert1000M = false;
}

TEST_F(AutomaticCrop, KeepsTheEnlargedBox) {
    setCorners(kUpright);
    taken(plainFrame());
    EXPECT_EQ(state().sheet.CutImgStartX, 100);
    EXPECT_EQ(state().sheet.CutImgStartY, 100);
    EXPECT_EQ(state().sheet.CutImgW, 404);
    EXPECT_EQ(state().sheet.CutImgH, 304);
    EXPECT_EQ(state().sheet.CutLastW, 400);
    EXPECT_EQ(state().sheet.CutLastH, 300);
}

TEST_F(AutomaticCrop, KeepsTheShiftedCorners) {
    setCorners({500, 400, -12, 400, -12, -6, 500, -6});
    taken(plainFrame());
    EXPECT_THAT(
        std::vector<int>(state().sheet.CutPoint.begin(), state().sheet.CutPoint.begin() + 8),
        ElementsAre(512, 406, 0, 406, 0, 0, 512, 0));
}

TEST_F(AutomaticCrop, ThrowsWhenACornerStaysOutsideThePaddedFrame) {
    setCorners({-10, 5, 300, -4, 310, 400, -2, 410});
    const cv::Mat frame = plainFrame();
    const cv::Mat before = frame.clone();
    test::PrintedText printed;
    EXPECT_THROW(capture(path_.data(), test::kFormat, kCropToSheet, frame), cv::Exception);
    EXPECT_THAT(printed.take(), HasSubstr("AA->img.cols,img.rows: 640,480\r\n"));
    EXPECT_EQ(state().sheet.CutImgStartX, -8);
    EXPECT_THAT(
        std::vector<int>(state().sheet.CutPoint.begin(), state().sheet.CutPoint.begin() + 8),
        ElementsAre(-8, 9, 302, 0, 312, 404, 0, 414));
    EXPECT_FALSE(std::filesystem::exists(path_));
    EXPECT_TRUE(test::isSamePicture(frame, before));
    EXPECT_EQ(frame.u->refcount, 1);
}

TEST_F(AutomaticCrop, ThrowsWhenThePageIsLargerThanTheTurnedPicture) {
    // Corners that form no rectangle: the page is as wide as the box's diagonal.
    setCorners({100, 100, 100, 400, 300, 200, 500, 400});
    EXPECT_THROW(capture(path_.data(), test::kFormat, kCropToSheet, plainFrame()), cv::Exception);
}

TEST_F(AutomaticCrop, SavesASpeckWhenNoCornersWereFound) {
    setCorners({});
    EXPECT_EQ(taken(plainFrame()).size(), cv::Size(16, 16));
}

TEST_F(AutomaticCrop, ThrowsForAnEmptyFrame) {
    setCorners(kUpright);
    EXPECT_THROW(capture(path_.data(), test::kFormat, kCropToSheet, cv::Mat()), cv::Exception);
}

TEST_F(AutomaticCrop, LeavesTheLiveFrameAlone) {
    for (const auto& corners : {kUpright, {240, 460, 60, 220, 460, -80, 640, 160}}) {
        setCorners(corners);
        cv::Mat frame = plainFrame();
        cv::RNG(3).fill(frame, cv::RNG::UNIFORM, 0, 256);
        const cv::Mat before = frame.clone();
        taken(frame);
        EXPECT_TRUE(test::isSamePicture(frame, before));
    }
}

TEST_F(AutomaticCrop, SavesRedAsRed) {
    setCorners(kUpright);
    const cv::Mat page = taken(plainFrame({255, 0, 0}));
    EXPECT_EQ(page.at<cv::Vec3b>(100, 100), cv::Vec3b(0, 0, 255));
}

TEST_F(AutomaticCrop, CutsTheSheetOutOfTheFrame) {
    cv::Mat frame = plainFrame(cv::Scalar::all(20));
    frame(cv::Rect(100, 100, 400, 300)).setTo(cv::Scalar::all(220));
    setCorners(kUpright);
    const cv::Mat page = taken(frame);
    int bright = 0;
    for (int x = 0; x < page.cols; ++x) {
        bright += page.at<cv::Vec3b>(page.rows / 2, x)[0] > 120 ? 1 : 0;
    }
    EXPECT_NEAR(bright, 400, 4);
}

// The box is 404 wide and the page starts at 2: two columns of the box, then black.
TEST_F(AutomaticCrop, HasABorderOfTheSurroundingsWithinTheFrame) {
    setCorners(kUpright);
    cv::Mat frame = plainFrame(cv::Scalar::all(200));
    const cv::Mat page = taken(frame);
    EXPECT_EQ(page.at<cv::Vec3b>(150, 2), cv::Vec3b(0, 0, 0));
    EXPECT_EQ(page.at<cv::Vec3b>(150, 8), cv::Vec3b(200, 200, 200));
    EXPECT_EQ(page.at<cv::Vec3b>(150, page.cols - 3), cv::Vec3b(0, 0, 0));
}

TEST_F(AutomaticCrop, PadsTheFrameWithBlackForASheetThatLeavesIt) {
    setCorners({500, 400, -40, 400, -40, 100, 500, 100});
    const cv::Mat page = taken(plainFrame(cv::Scalar::all(200)));
    EXPECT_EQ(page.at<cv::Vec3b>(150, 30), cv::Vec3b(0, 0, 0));
    EXPECT_EQ(page.at<cv::Vec3b>(150, 60), cv::Vec3b(200, 200, 200));
}

class WholeFrameMode : public AutomaticCrop, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(AutomaticCrop, WholeFrameMode,
                         testing::Values(test::kWholeFrame, 2, -1, 7));

TEST_P(WholeFrameMode, SavesTheFrameAtItsOwnSize) {
    setCorners(kUpright);
    EXPECT_EQ(taken(plainFrame(), GetParam()).size(), cv::Size(640, 480));
    EXPECT_EQ(state().sheet.CutPoint[0], kUpright[0]);
}

} // namespace
} // namespace doccam
