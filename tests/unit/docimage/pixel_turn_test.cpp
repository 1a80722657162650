// The one-pass turns against OpenCV's transpositions and mirrors.
#include "docimage/turn/quarter_turn.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

namespace doccam::test {
namespace {

cv::Mat noisy(int rows, int cols) {
    cv::Mat picture(rows, cols, CV_8UC3);
    cv::RNG random(7);
    random.fill(picture, cv::RNG::UNIFORM, 0, 256);
    return picture;
}

// A view that ends where its memory ends on one side, and has pixels around it on the others.
cv::Mat viewOf(int rows, int cols) {
    return noisy(rows + 2, cols + 3)(cv::Rect(3, 2, cols, rows));
}

cv::Mat plainlyTurned(const cv::Mat& source, Quarter quarter) {
    cv::Mat turned;
    cv::transpose(source, turned);
    cv::flip(turned, turned, quarter == Quarter::kClockwise ? 1 : 0);
    return turned;
}

bool same(const cv::Mat& left, const cv::Mat& right) {
    return left.size() == right.size() && cv::norm(left, right, cv::NORM_INF) == 0;
}

// Sides close to the block size of the turns, and far from it.
constexpr int kSides[] = {1, 2, 3, 4, 5, 15, 16, 17, 63, 100, 127, 128, 129, 200};
constexpr int kLongSides[] = {511, 512, 513, 1030};

template <typename Check>
void forAllSizes(Check check) {
    for (const int rows : kSides) {
        for (const int cols : kSides) {
            check(rows, cols);
        }
    }
    for (const int rows : kLongSides) {
        for (const int cols : {3, 128, 130}) {
            check(rows, cols);
        }
    }
}

TEST(PixelTurn, TurnsByAQuarterAsTransposingAndMirroringDo) {
    for (const Quarter quarter : {Quarter::kClockwise, Quarter::kCounterClockwise}) {
        forAllSizes([quarter](int rows, int cols) {
            const cv::Mat source = noisy(rows, cols);
            cv::Mat turned(cols, rows, CV_8UC3);
            turnIntoFrame(source, quarter, turned);
            EXPECT_TRUE(same(turned, plainlyTurned(source, quarter))) << rows << " x " << cols;
        });
    }
}

TEST(PixelTurn, TurnsViewsIntoViewsAndWritesNothingAround) {
    for (const Quarter quarter : {Quarter::kClockwise, Quarter::kCounterClockwise}) {
        forAllSizes([quarter](int rows, int cols) {
            const cv::Mat source = viewOf(rows, cols);
            cv::Mat around(cols + 2, rows + 2, CV_8UC3, cv::Scalar::all(9));
            cv::Mat expected = around.clone();
            const cv::Rect inside(1, 1, rows, cols);
            cv::Mat turned = around(inside);
            turnIntoFrame(source, quarter, turned);
            plainlyTurned(source, quarter).copyTo(expected(inside));
            EXPECT_TRUE(same(around, expected)) << rows << " x " << cols;
        });
    }
}

TEST(PixelTurn, TurnsByHalfAsTwoMirrorsDo) {
    forAllSizes([](int rows, int cols) {
        for (cv::Mat image : {noisy(rows, cols), viewOf(rows, cols)}) {
            cv::Mat expected;
            cv::flip(image, expected, -1);
            turnByHalf(image);
            EXPECT_TRUE(same(image, expected)) << rows << " x " << cols;
        }
    });
}

TEST(PixelTurn, TurnsAWholeFrame) {
    const cv::Mat frame = noisy(2448, 3264);
    for (const Quarter quarter : {Quarter::kClockwise, Quarter::kCounterClockwise}) {
        cv::Mat turned(3264, 2448, CV_8UC3);
        turnIntoFrame(frame, quarter, turned);
        EXPECT_TRUE(same(turned, plainlyTurned(frame, quarter)));
    }
}

TEST(PixelTurn, MirrorsPicturesOfOtherPixels) {
    cv::Mat grey = cv::Mat_<uchar>({2, 3}, {1, 2, 3, 4, 5, 6});
    turnByHalf(grey);
    EXPECT_TRUE(same(grey, cv::Mat_<uchar>({2, 3}, {6, 5, 4, 3, 2, 1})));
}

class TurnedFrame : public testing::Test {
  protected:
    void TearDown() override { state().session.frames->roimage.release(); }
};

TEST_F(TurnedFrame, TakesPicturesOfOtherPixels) {
    const cv::Mat grey = cv::Mat_<uchar>({2, 3}, {1, 2, 3, 4, 5, 6});
    state().session.frames->roimage.create(1, 1, CV_8UC3);
    CamdataRote90(grey);
    EXPECT_TRUE(same(state().session.frames->roimage, plainlyTurned(grey, Quarter::kClockwise)));
    CamdataRote270(grey);
    EXPECT_TRUE(
        same(state().session.frames->roimage, plainlyTurned(grey, Quarter::kCounterClockwise)));
}

TEST_F(TurnedFrame, CanBeTurnedInPlace) {
    for (const int rows : {20, 30}) {
        const cv::Mat before = noisy(rows, 20);
        state().session.frames->roimage = before.clone();
        CamdataRote90(state().session.frames->roimage);
        EXPECT_TRUE(
            same(state().session.frames->roimage, plainlyTurned(before, Quarter::kClockwise)));
    }
}

} // namespace
} // namespace doccam::test
