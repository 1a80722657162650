// Which cleaning a still gets, and that the cleaned picture is saved.
#include "state/library_state.h"
#include "still_request.h"
#include "support/same_picture.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace doccam {
namespace {

// A light sheet, larger than any speck, on a dark desk. Red first.
cv::Mat frameWithSheet() {
    cv::Mat frame(480, 640, CV_8UC3, cv::Scalar(30, 35, 40));
    frame(cv::Rect(100, 80, 440, 320)).setTo(cv::Scalar(200, 190, 180));
    frame(cv::Rect(180, 200, 280, 12)).setTo(cv::Scalar(60, 60, 60));
    return frame;
}

class PageCleaning : public testing::TestWithParam<int> {
  protected:
    ~PageCleaning() override {
        state().settings.isDelBlackedge = 0;
        state().settings.isDelBcakColor = 0;
        state().sheet.CutPoint.fill(0);
    }

    cv::Mat taken(int blackEdge, int backColour) {
        cv::Mat frame = frameWithSheet();
        DrawingEdge(frame.data, frame.cols, frame.rows, 0);
        state().settings.isDelBlackedge = blackEdge;
        state().settings.isDelBcakColor = backColour;
        const cv::Mat before = frame.clone();
        capture(path_.data(), test::kFormat, GetParam(), frame);
        EXPECT_EQ(cv::norm(frame, before, cv::NORM_INF), 0);
        return cv::imread(path_);
    }

    const test::ScratchFolder folder_;
    std::string path_ = folder_.file("still.png");
};

INSTANTIATE_TEST_SUITE_P(BothKindsOfStill, PageCleaning,
                         testing::Values(test::kWholeFrame, kCropToSheet));

TEST_P(PageCleaning, RunsOnlyForSettingsOfExactlyOne) {
    const cv::Mat plain = taken(0, 0);
    for (const int value : {2, -1, 100}) {
        EXPECT_TRUE(test::isSamePicture(taken(value, value), plain)) << value;
    }
}

TEST_P(PageCleaning, WhitensTheDarkEdgeWhenSet) {
    cv::Mat expected = taken(0, 0);
    FN_DeleteBlackEdge(expected);
    EXPECT_TRUE(test::isSamePicture(taken(1, 0), expected));
    EXPECT_FALSE(test::isSamePicture(taken(0, 0), expected));
}

TEST_P(PageCleaning, WhitensTheBackgroundWhenSet) {
    cv::Mat expected = taken(0, 0);
    FN_DeleteBackcolor(expected);
    EXPECT_TRUE(test::isSamePicture(taken(0, 1), expected));
    EXPECT_FALSE(test::isSamePicture(taken(0, 0), expected));
}

TEST_P(PageCleaning, WhitensTheEdgeBeforeTheBackground) {
    cv::Mat expected = taken(0, 0);
    FN_DeleteBlackEdge(expected);
    FN_DeleteBackcolor(expected);
    EXPECT_TRUE(test::isSamePicture(taken(1, 1), expected));
}

TEST(WholeFrameCleaning, ComesBeforeTheEnlargement) {
    const test::ScratchFolder folder;
    std::string path = folder.file("still.png");
    state().settings.isDelBlackedge = 1;
    state().session.isInsert1000M = true;
    cv::Mat cleaned;
    cv::cvtColor(frameWithSheet(), cleaned, cv::COLOR_RGB2BGR);
    FN_DeleteBlackEdge(cleaned);
    cv::resize(cleaned, cleaned, {3672, 2856}, 0, 0, cv::INTER_LINEAR);
    capture(path.data(), test::kFormat, test::kWholeFrame, frameWithSheet());
    state().settings.isDelBlackedge = 0;
    state().session.isInsert1000M = false;
    EXPECT_TRUE(test::isSamePicture(cv::imread(path), cleaned));
}

} // namespace
} // namespace doccam
