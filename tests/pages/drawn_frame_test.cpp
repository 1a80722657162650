#include "scene/frames/drawn_frame.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>

namespace doccam::virtualcam {

namespace {

double levelAt(const cv::Mat& grey, cv::Point2d point) {
    return grey.at<unsigned char>(cvRound(point.y), cvRound(point.x));
}

// The middle of a side, moved by so many pixels out of the sheet.
cv::Point2d besideSide(const Quad& corners, std::size_t side, double outwards) {
    const cv::Point2d from = corners[side];
    const cv::Point2d along = corners[(side + 1) % 4] - from;
    const cv::Point2d outside(along.y, -along.x);
    return from + along / 2 + outside / cv::norm(along) * outwards;
}

TEST(DrawnFrame, IsTheSameForTheSameSeed) {
    const DrawnFrame first = drawFrame("card", 3);
    const DrawnFrame second = drawFrame("card", 3);
    EXPECT_EQ(cv::norm(first.picture, second.picture, cv::NORM_INF), 0);
    EXPECT_EQ(first.sheets.front().corners, second.sheets.front().corners);
    EXPECT_NE(first.sheets.front().corners, drawFrame("card", 4).sheets.front().corners);
}

TEST(DrawnFrame, ShowsThePaperUpToItsTrueSides) {
    const DrawnFrame frame = drawFrame("desk-dark", 2);
    cv::Mat grey;
    cv::cvtColor(frame.picture, grey, cv::COLOR_BGR2GRAY);
    const Quad& corners = frame.sheets.front().corners;
    for (std::size_t side = 0; side < 4; ++side) {
        const double paper = levelAt(grey, besideSide(corners, side, -12));
        const double desk = levelAt(grey, besideSide(corners, side, 12));
        EXPECT_GT(paper, desk + 60);
        EXPECT_NEAR(levelAt(grey, besideSide(corners, side, -3)), paper, 20);
        EXPECT_NEAR(levelAt(grey, besideSide(corners, side, 3)), desk, 20);
    }
}

TEST(DrawnFrame, HasASideOutsideOfThePictureWhereItIsCut) {
    const TrueSheet sheet = drawFrame("cut-side", 1).sheets.front();
    EXPECT_TRUE(sheet.cut);
    int outside = 0;
    for (const cv::Point2d& corner : sheet.corners) {
        outside += cv::Rect2d(0, 0, 3264, 2448).contains(corner) ? 0 : 1;
    }
    EXPECT_EQ(outside, 2);
}

TEST(DrawnFrame, RefusesUnknownCategories) {
    EXPECT_THROW(drawFrame("sea", 1), std::invalid_argument);
}

} // namespace

} // namespace doccam::virtualcam
