#include "overlap.h"

#include <gtest/gtest.h>

namespace doccam::test {

namespace {

using virtualcam::Quad;

const Quad kSquare{cv::Point2d(100, 100), {300, 100}, {300, 300}, {100, 300}};

Quad moved(const Quad& quad, cv::Point2d by) {
    Quad result = quad;
    for (cv::Point2d& corner : result) {
        corner += by;
    }
    return result;
}

TEST(Overlap, IsOneForTheSameSheet) {
    EXPECT_NEAR(overlap(kSquare, kSquare, {400, 400}), 1, 1e-12);
}

TEST(Overlap, IsIntersectionOverUnion) {
    EXPECT_NEAR(overlap(kSquare, moved(kSquare, {100, 0}), {800, 400}), 1.0 / 3, 1e-12);
    EXPECT_EQ(overlap(kSquare, moved(kSquare, {250, 0}), {800, 400}), 0);
}

TEST(Overlap, IgnoresWhatLiesOutsideOfThePicture) {
    const Quad longer{cv::Point2d(100, 100), {900, 100}, {900, 300}, {100, 300}};
    const Quad shorter{cv::Point2d(100, 100), {600, 100}, {600, 300}, {100, 300}};
    EXPECT_NEAR(overlap(longer, shorter, {500, 400}), 1, 1e-12);
}

TEST(TurnsToUpright, CountsQuarterTurnsClockwise) {
    EXPECT_EQ(turnsToUpright(kSquare, kSquare), 0);
    // The upright page's top right corner is found at the top left: it must turn clockwise once.
    const Quad truth{kSquare[3], kSquare[0], kSquare[1], kSquare[2]};
    EXPECT_EQ(turnsToUpright(kSquare, truth), 1);
}

} // namespace

} // namespace doccam::test
