// Stills by the page engine, from drawn frames.
#include "decoded.h"
#include "environment.h"
#include "output/still/still.h"
#include "state/library_state.h"
#include "support/printed_text.h"
#include "support/scratch_folder.h"
#include "unit/page/drawn_sheets.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using doccam::state;
using namespace doccam::test;

constexpr int kWhole = 0;
constexpr int kCropped = 1;
constexpr double kA4 = 210.0 / 297;

const cv::Scalar kWarmPaper(214, 226, 240); // blue first
const cv::Scalar kDesk(90, 72, 60);

class EngineStill : public testing::Test {
  protected:
    EngineStill() {
        cv::RNG random(3);
        random.fill(empty_, cv::RNG::NORMAL, 70, 1);
        cv::Mat paper = drawnSheet({1200, 900}, corners_, kWarmPaper, kDesk);
        cv::rectangle(paper, {560, 420, 90, 12}, cv::Scalar(40, 44, 46), -1);
        cv::cvtColor(paper, frame_, cv::COLOR_BGR2RGB);
        addNoise(frame_, 1);
        SetPageEngine(1);
    }

    ~EngineStill() override {
        SetPageEngine(0);
        SetColorMode(0);
        SetDelBlackedge(0);
        SetDelBackColor(0);
        SetRotate(0);
        state().session.isInsert1000M = false;
        state().sheet = {};
    }

    // What is printed while the still is taken; it is in saved_, as stored.
    std::string take(const cv::Mat& frame, int cropMode, const std::string& name = "still.png") {
        std::string path = scratch_.file(name);
        fs::remove(path);
        PrintedText printed;
        capture(path.data(), 0, cropMode, frame);
        saved_ = cv::imread(path, cv::IMREAD_UNCHANGED);
        std::string lines = printed.take();
        const std::string first = "capture->path:" + path + "\n";
        EXPECT_EQ(lines.substr(0, first.size()), first);
        return lines.substr(first.size());
    }

    const doccam::page::Corners corners_ = seenCorners({.tilt = 14, .turn = 6}, kA4);
    const ScratchFolder scratch_;
    cv::Mat frame_; // red first
    cv::Mat empty_ = cv::Mat(900, 1200, CV_8UC3);
    cv::Mat saved_;
};

TEST_F(EngineStill, OfASheetAtAnAngleIsAPageOfItsProportions) {
    const std::string lines = take(frame_, kCropped);
    ASSERT_FALSE(saved_.empty());
    EXPECT_NEAR(static_cast<double>(saved_.cols) / saved_.rows, kA4, 0.01 * kA4);
    const std::string size = std::to_string(saved_.cols) + "," + std::to_string(saved_.rows);
    EXPECT_EQ(lines, "AA->img.cols,img.rows: 1200,900\r\nBB->img.cols,img.rows: " + size +
                         "\r\ncx,cy,cw,ch: 0,0," + size + "\r\n");
    // Neither desk nor border: the corners are paper as seen.
    for (const cv::Point corner : {cv::Point(3, 3), {saved_.cols - 4, saved_.rows - 4}}) {
        EXPECT_LT(cv::norm(saved_.at<cv::Vec3b>(corner), cv::Vec3b(214, 226, 240)), 12);
    }
}

TEST_F(EngineStill, WithoutASheetIsTheWholeFrame) {
    EXPECT_EQ(take(empty_, kCropped), "capture->01\ncapture->02\ncapture->03\ncapture->04\n");
    EXPECT_EQ(saved_.size(), empty_.size());
}

TEST_F(EngineStill, OfTheWholeFrameIsThatOfTheContract) {
    const std::string lines = take(frame_, kWhole);
    const cv::Mat whole = saved_;
    SetPageEngine(0);
    EXPECT_EQ(take(frame_, kWhole), lines);
    EXPECT_EQ(cv::norm(whole, saved_, cv::NORM_INF), 0);
}

TEST_F(EngineStill, OfTheWholeFrameIsEnlargedWhereTheHostAskedForThatSize) {
    state().session.isInsert1000M = true;
    EXPECT_EQ(take(empty_, kCropped), "capture->01\ncapture->02\ncapture->04\n");
    EXPECT_EQ(saved_.size(), cv::Size(3672, 2856));
    SetRotate(3);
    SetColorMode(2);
    take(empty_, kWhole);
    EXPECT_EQ(saved_.size(), cv::Size(2856, 3672));
    take(frame_, kCropped);
    EXPECT_LT(saved_.cols, 1200);
}

TEST_F(EngineStill, HasThePaperLookWithEitherCleaningSettingAtOne) {
    SetDelBlackedge(2);
    take(frame_, kCropped);
    const cv::Mat photo = saved_;
    for (const auto& [edges, background] : {std::pair(1, 0), std::pair(0, 1), std::pair(1, 1)}) {
        SetDelBlackedge(edges);
        SetDelBackColor(background);
        take(frame_, kCropped);
        EXPECT_EQ(saved_.size(), photo.size());
        EXPECT_GT(cv::mean(saved_)[0], 250);
        EXPECT_LT(cv::mean(photo)[0], 225);
    }
    take(frame_, kWhole);
    EXPECT_EQ(saved_.size(), frame_.size());
    EXPECT_GT(saved_.at<cv::Vec3b>(300, 600)[0], 250);
}

TEST_F(EngineStill, InGreyAndInBlackAndWhiteHasOneChannel) {
    for (const int background : {0, 1}) {
        SetDelBackColor(background);
        SetColorMode(1);
        take(frame_, kCropped);
        EXPECT_EQ(saved_.type(), CV_8UC1);
        SetColorMode(2);
        take(frame_, kCropped);
        ASSERT_EQ(saved_.type(), CV_8UC1);
        const cv::Mat grey = (saved_ != 0) & (saved_ != 255);
        EXPECT_EQ(cv::countNonZero(grey), 0);
        const double black = 1 - cv::mean(saved_)[0] / 255;
        EXPECT_GT(black, 0.001); // the line of print
        EXPECT_LT(black, 0.01);
    }
}

TEST_F(EngineStill, InAnInvalidColourModeIsNotSaved) {
    SetColorMode(3);
    take(frame_, kCropped);
    take(frame_, kWhole);
    EXPECT_TRUE(fs::is_empty(scratch_.path()));
}

TEST_F(EngineStill, LeavesTheFramesPixelsAlone) {
    const cv::Mat before = frame_.clone();
    SetDelBackColor(1);
    for (const int mode : {0, 1, 2}) {
        SetColorMode(mode);
        take(frame_, kCropped);
        take(frame_, kWhole);
        EXPECT_EQ(cv::norm(frame_, before, cv::NORM_INF), 0) << mode;
    }
}

TEST_F(EngineStill, IsWrittenAsThePathSays) {
    take(frame_, kCropped, "page.jpg");
    EXPECT_FALSE(saved_.empty());
    std::string path = scratch_.file("page.pdf");
    const PrintedText printed;
    capture(path.data(), 0, kCropped, frame_);
    EXPECT_TRUE(fs::exists(path));
}

TEST_F(EngineStill, IsOfTheSheetThatWasOutlinedIfSeveralLieThere) {
    const doccam::page::Corners left{{{100, 200}, {400, 200}, {400, 620}, {100, 620}}};
    const doccam::page::Corners right{{{600, 250}, {1100, 250}, {1100, 600}, {600, 600}}};
    cv::Mat frame = drawnSheet({1200, 900}, left, kWarmPaper, kDesk);
    const cv::Mat other = drawnSheet({1200, 900}, right, kWarmPaper, kDesk);
    other.colRange(500, 1200).copyTo(frame.colRange(500, 1200));
    addNoise(frame, 1);
    for (const auto& corners : {left, right}) {
        const doccam::page::Sheet live{corners, 0.9, false};
        const PrintedText printed;
        const auto still = doccam::prepareStill("a.png", kCropped, frame, state(), &live);
        EXPECT_NEAR(still.page.cols, corners[1].x - corners[0].x, 4);
        EXPECT_NEAR(still.page.rows, corners[2].y - corners[1].y, 4);
    }
}

TEST_F(EngineStill, IsNotOfASheetThatWasOutlinedAndIsGone) {
    const doccam::page::Sheet live{corners_, 0.9, false};
    const PrintedText printed;
    const auto still = doccam::prepareStill("a.png", kCropped, empty_, state(), &live);
    EXPECT_TRUE(still.ofWholeFrame);
}

TEST_F(EngineStill, IsOfASheetOfWhichAPartLiesOutside) {
    doccam::page::Corners cut = corners_;
    for (cv::Point2d& corner : cut) {
        corner.y -= 220;
    }
    cv::Mat frame = drawnSheet({1200, 900}, cut, kWarmPaper, kDesk);
    addNoise(frame, 1);
    take(frame, kCropped);
    EXPECT_NE(saved_.size(), frame.size());
}

} // namespace
