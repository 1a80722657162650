// Quarter turns of the live frame.
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

#include <string>
#include <vector>

namespace {

using doccam::state;

// One letter per pixel; the other two samples derive from it, so that swapped samples show.
cv::Mat pictureOf(const std::vector<std::string>& rows) {
    cv::Mat picture(static_cast<int>(rows.size()), static_cast<int>(rows.front().size()), CV_8UC3);
    for (int y = 0; y < picture.rows; ++y) {
        for (int x = 0; x < picture.cols; ++x) {
            const auto letter =
                static_cast<uchar>(rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)]);
            picture.at<cv::Vec3b>(y, x) = {letter, static_cast<uchar>(letter + 40),
                                           static_cast<uchar>(letter + 80)};
        }
    }
    return picture;
}

std::vector<std::string> lettersOf(const cv::Mat& picture) {
    std::vector<std::string> rows;
    for (int y = 0; y < picture.rows; ++y) {
        std::string row;
        for (int x = 0; x < picture.cols; ++x) {
            const auto pixel = picture.at<cv::Vec3b>(y, x);
            EXPECT_EQ(pixel[1], pixel[0] + 40);
            EXPECT_EQ(pixel[2], pixel[0] + 80);
            row += static_cast<char>(pixel[0]);
        }
        rows.push_back(row);
    }
    return rows;
}

using Rows = std::vector<std::string>;

class QuarterTurn : public testing::Test {
  protected:
    void SetUp() override {
        state().session.frames->roimage = cv::Mat(4, 2, CV_8UC3, cv::Scalar::all(0));
    }

    void TearDown() override { state().session.frames->roimage.release(); }

    cv::Mat frame_ = pictureOf({"ABCD", "EFGH"});
};

TEST_F(QuarterTurn, TurnsClockwiseIntoTheTurnedFrame) {
    CamdataRote90(frame_);
    EXPECT_EQ(lettersOf(state().session.frames->roimage), (Rows{"EA", "FB", "GC", "HD"}));
    EXPECT_EQ(lettersOf(frame_), (Rows{"ABCD", "EFGH"}));
}

TEST_F(QuarterTurn, TurnsCounterClockwiseIntoTheTurnedFrame) {
    CamdataRote270(frame_);
    EXPECT_EQ(lettersOf(state().session.frames->roimage), (Rows{"DH", "CG", "BF", "AE"}));
    EXPECT_EQ(lettersOf(frame_), (Rows{"ABCD", "EFGH"}));
}

TEST_F(QuarterTurn, ReusesTheTurnedFramesMemory) {
    const uchar* const pixels = state().session.frames->roimage.data;
    CamdataRote90(frame_);
    EXPECT_EQ(state().session.frames->roimage.data, pixels);
    CamdataRote270(frame_);
    EXPECT_EQ(state().session.frames->roimage.data, pixels);
}

TEST_F(QuarterTurn, LeavesAnEmptyTurnedFrameEmpty) {
    state().session.frames->roimage.release();
    CamdataRote90(frame_);
    EXPECT_TRUE(state().session.frames->roimage.empty());
    CamdataRote270(frame_);
    EXPECT_TRUE(state().session.frames->roimage.empty());
}

TEST_F(QuarterTurn, ReallocatesATurnedFrameOfAnotherSize) {
    CamdataRote90(pictureOf({"ABC"}));
    EXPECT_EQ(lettersOf(state().session.frames->roimage), (Rows{"A", "B", "C"}));
    CamdataRote270(frame_);
    EXPECT_EQ(lettersOf(state().session.frames->roimage), (Rows{"DH", "CG", "BF", "AE"}));
}

TEST_F(QuarterTurn, TurnsByHalfInPlace) {
    const cv::Mat turned = CamdataRote180(frame_);
    EXPECT_EQ(lettersOf(frame_), (Rows{"HGFE", "DCBA"}));
    EXPECT_EQ(lettersOf(turned), (Rows{"HGFE", "DCBA"}));
    EXPECT_EQ(turned.data, frame_.data);
}

TEST_F(QuarterTurn, TurnsByHalfWithoutATurnedFrame) {
    state().session.frames->roimage.release();
    CamdataRote180(frame_);
    EXPECT_EQ(lettersOf(frame_), (Rows{"HGFE", "DCBA"}));
    EXPECT_TRUE(state().session.frames->roimage.empty());
}

TEST_F(QuarterTurn, LetsOpenCvsExceptionThrough) {
    const cv::Mat solid({2, 2, 2}, CV_8UC3);
    EXPECT_THROW(CamdataRote90(solid), cv::Exception);
    EXPECT_THROW(CamdataRote270(solid), cv::Exception);
    EXPECT_THROW(CamdataRote180(solid), cv::Exception);
}

} // namespace
