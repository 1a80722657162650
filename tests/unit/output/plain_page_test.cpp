// Cutting sheets out of frames against the plain steps.
#include "drawn_sheet.h"
#include "plain/outline.h"
#include "plain/page.h"
#include "state/library_state.h"
#include "still_request.h"
#include "support/photographs.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include <array>
#include <fstream>
#include <iterator>

namespace doccam {
namespace {

std::string bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class PlainPage : public testing::Test {
  protected:
    ~PlainPage() override {
        state().sheet.CutPoint.fill(0);
        state().settings.isDelBlackedge = 0;
        state().settings.isDelBcakColor = 0;
    }

    void expectPlainPage(const cv::Mat& frame, const std::array<int, 8>& corners) {
        std::array<int, 8> moved = corners;
        const cv::Mat expected = plain::straightPage(frame, moved.data());
        std::copy(corners.begin(), corners.end(), state().sheet.CutPoint.begin());
        capture(page_.data(), test::kFormat, kCropToSheet, frame);
        const cv::Mat actual = cv::imread(page_);
        ASSERT_EQ(actual.size(), expected.size());
        EXPECT_EQ(cv::norm(actual, expected, cv::NORM_INF), 0);
        EXPECT_TRUE(std::equal(moved.begin(), moved.end(), state().sheet.CutPoint.begin()));
    }

    void expectPlainStill(const cv::Mat& frame) {
        cv::Mat searched = frame.clone();
        const plain::Outline outline = plain::drawEdge(searched, 0);
        ASSERT_EQ(outline.result, 0);
        std::array<int, 8> moved = outline.corners;
        plain::saveCleanPage(frame, moved.data(), plain_);
        std::copy(outline.corners.begin(), outline.corners.end(), state().sheet.CutPoint.begin());
        state().settings.isDelBlackedge = 1;
        state().settings.isDelBcakColor = 1;
        capture(still_.data(), test::kFormat, kCropToSheet, frame);
        EXPECT_EQ(bytesOf(still_), bytesOf(plain_));
        EXPECT_FALSE(bytesOf(still_).empty());
    }

    const test::ScratchFolder folder_;
    std::string page_ = folder_.file("page.bmp");
    std::string still_ = folder_.file("still.jpg");
    const std::string plain_ = folder_.file("plain.jpg");
};

cv::Mat noise(cv::Size size) {
    cv::Mat frame(size, CV_8UC3);
    cv::RNG(17).fill(frame, cv::RNG::UNIFORM, 1, 256);
    return frame;
}

TEST_F(PlainPage, EqualsThePlainStepsForCornersInAndAroundTheFrame) {
    const std::array<std::array<int, 8>, 9> sheets = {{
        {500, 400, 100, 400, 100, 100, 500, 100},
        {240, 460, 60, 220, 460, -80, 640, 160},
        {501, 399, 103, 398, 103, 101, 501, 102},
        {640, 480, 0, 480, 0, 0, 640, 0},
        {700, 500, -40, 500, -40, -30, 700, -30},
        {500, 400, -12, 400, -12, -6, 500, -6},
        {300, 470, 100, 460, 110, 20, 310, 30},
        {420, 333, 190, 401, 120, 160, 350, 90},
        {2867, 686, 1987, 498, 2133, -186, 3013, 2},
    }};
    for (const auto& corners : sheets) {
        SCOPED_TRACE(testing::PrintToString(corners));
        expectPlainPage(noise({640, 480}), corners);
    }
}

TEST_F(PlainPage, EqualsThePlainStepsForAFrameWithinAPicture) {
    const cv::Mat larger = noise({700, 520});
    const cv::Mat frame = larger(cv::Rect(31, 20, 640, 480));
    expectPlainPage(frame, {500, 400, -12, 400, -12, -6, 500, -6});
    expectPlainPage(frame, {500, 400, 100, 400, 100, 100, 500, 100});
}

TEST_F(PlainPage, IsTheSameFileOnceCleaned) {
    const cv::Mat sheet = test::flatSheet({640, 440});
    for (const double degrees : {0.0, 3.0, -17.5, 88.0}) {
        SCOPED_TRACE(degrees);
        expectPlainStill(test::sheetOnDesk(sheet, degrees, {1280, 960}));
    }
}

TEST_F(PlainPage, IsTheSameFileForPhotographs) {
    for (const auto& [name, photograph] : test::photographs()) {
        SCOPED_TRACE(name);
        expectPlainStill(photograph);
    }
}

} // namespace
} // namespace doccam
