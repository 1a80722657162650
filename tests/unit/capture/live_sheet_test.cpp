// Following drawn sheets from frame to frame.
#include "capture/live_sheet.h"
#include "page/quadrilateral.h"
#include "state/sheet.h"
#include "unit/page/drawn_sheets.h"

#include <gmock/gmock.h>
#include <opencv2/imgproc.hpp>

namespace doccam::test {
namespace {

const cv::Scalar kPaper(235, 240, 238);
const cv::Scalar kDesk(60, 72, 90);
constexpr double kA4 = 210.0 / 297;
constexpr int kUpright = 0;

class LiveSheetTest : public testing::Test {
  protected:
    // Shows the frame count times; afterwards shown_ has the outline.
    void show(const cv::Mat& frame, int count = 1, int turns = kUpright) {
        for (int i = 0; i < count; ++i) {
            shown_ = frame.clone();
            live_.outline(shown_, turns, kept_);
        }
    }

    bool isOutlined(const cv::Mat& frame, int turns = kUpright) const {
        return live_.outlined(frame.size(), turns) != nullptr;
    }

    double distanceFrom(const page::Corners& corners) const {
        return page::distanceBetween(live_.outlined(shown_.size(), kUpright)->corners, corners);
    }

    LiveSheet live_;
    record::Sheet kept_;
    cv::Mat shown_;
    const page::Corners corners_ = seenCorners({.tilt = 12, .turn = 9}, kA4);
    const cv::Mat frame_ = drawnSheet({1200, 900}, corners_, kPaper, kDesk);
    const cv::Mat empty_ = cv::Mat(frame_.size(), CV_8UC3, kDesk);
};

TEST_F(LiveSheetTest, OutlinesASheetSeenAtAnAngle) {
    show(frame_);
    ASSERT_TRUE(isOutlined(frame_));
    EXPECT_LT(distanceFrom(corners_), 1);
    cv::Mat line;
    cv::inRange(shown_, cv::Scalar(0, 255, 0), cv::Scalar(0, 255, 0), line);
    EXPECT_GT(cv::countNonZero(line), 5000);
}

TEST_F(LiveSheetTest, KeepsRoundedCornersClockwiseFromTheLowest) {
    show(frame_);
    const std::vector<int> kept(kept_.CutPoint.begin(), kept_.CutPoint.begin() + 8);
    page::Corners corners;
    for (std::size_t i = 0; i < 4; ++i) {
        corners[i] = cv::Point2d(kept[2 * i], kept[2 * i + 1]);
        EXPECT_LE(corners[i].y, corners[0].y);
    }
    EXPECT_GT(page::areaOf(corners), 0);
    EXPECT_LT(page::distanceBetween(corners, corners_), 1.5);
    EXPECT_EQ(kept_.CutPoint[8], 0);
}

TEST_F(LiveSheetTest, ChangesNothingWithoutASheet) {
    kept_.CutPoint.fill(7);
    show(empty_, 20);
    EXPECT_FALSE(isOutlined(empty_));
    EXPECT_THAT(kept_.CutPoint, testing::Each(7));
    EXPECT_EQ(cv::norm(shown_, empty_, cv::NORM_INF), 0);
}

TEST_F(LiveSheetTest, FindsASheetThatIsLaidDownLaterAndMissesItWhenItIsGone) {
    show(empty_, 11);
    show(frame_, 8);
    ASSERT_TRUE(isOutlined(frame_));
    show(empty_);
    EXPECT_FALSE(isOutlined(empty_));
}

TEST_F(LiveSheetTest, SearchesAnEmptyDeskInEveryEighthFrameOnly) {
    show(empty_);
    show(frame_, 7);
    EXPECT_FALSE(isOutlined(frame_));
    show(frame_);
    EXPECT_TRUE(isOutlined(frame_));
}

TEST_F(LiveSheetTest, FollowsASheetThatIsPushed) {
    for (int x = 0; x < 90; x += 9) {
        page::Corners moved = corners_;
        for (cv::Point2d& corner : moved) {
            corner.x += x;
        }
        show(drawnSheet({1200, 900}, moved, kPaper, kDesk));
        ASSERT_TRUE(isOutlined(frame_)) << x;
        EXPECT_LT(distanceFrom(moved), 1) << x;
    }
}

// The sides of the smaller sheet are still to be seen.
TEST_F(LiveSheetTest, DoesNotStayWithASheetOnALargerOneThatHasBeenPushedUnderIt) {
    const page::Corners large = seenCorners({.tilt = 12, .turn = 9, .distance = 1.6}, kA4);
    show(frame_, 3);
    ASSERT_LT(distanceFrom(corners_), 1);
    cv::Mat both = drawnSheet({1200, 900}, large, kPaper, kDesk);
    std::vector<cv::Point> line;
    for (const cv::Point2d& corner : corners_) {
        line.emplace_back(corner);
    }
    cv::polylines(both, line, true, cv::Scalar(150, 150, 150), 2, cv::LINE_AA);
    show(both, 40);
    ASSERT_TRUE(isOutlined(both));
    EXPECT_LT(distanceFrom(large), 2);
}

TEST_F(LiveSheetTest, BeginsAnewWhenThePictureHasOtherSidesOrIsTurned) {
    show(frame_);
    EXPECT_FALSE(isOutlined(frame_, 2));
    cv::Mat turned;
    cv::rotate(frame_, turned, cv::ROTATE_180);
    show(turned, 1, 2);
    EXPECT_TRUE(isOutlined(turned, 2));
    EXPECT_FALSE(isOutlined(turned));
    cv::rotate(frame_, turned, cv::ROTATE_90_CLOCKWISE);
    show(turned, 1, 1);
    EXPECT_TRUE(isOutlined(turned, 1));
}

TEST_F(LiveSheetTest, ForgetsASheet) {
    show(frame_);
    live_.forget();
    EXPECT_FALSE(isOutlined(frame_));
    show(frame_);
    EXPECT_TRUE(isOutlined(frame_));
}

} // namespace
} // namespace doccam::test
