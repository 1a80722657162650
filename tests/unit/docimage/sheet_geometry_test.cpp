#include "docimage/sheet/sheet_geometry.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>

#include <limits>

namespace doccam {
namespace {

TEST(SheetGeometry, HasAngle0WhenTheFirstEdgeIsUpright) {
    const SheetGeometry sheet = measureSheet({{{100, 500}, {100, 200}, {700, 200}, {700, 500}}});
    EXPECT_EQ(sheet.angle, 0.0F);
    EXPECT_EQ(sheet.page, cv::Size(600, 300));
    EXPECT_EQ(sheet.bounds, cv::Rect(100, 200, 600, 300));
}

TEST(SheetGeometry, HasAngle360WhenTheFirstEdgeIsLevel) {
    const SheetGeometry sheet = measureSheet({{{700, 500}, {100, 500}, {100, 200}, {700, 200}}});
    EXPECT_EQ(sheet.angle, 360.0F);
    EXPECT_EQ(sheet.page, cv::Size(600, 300));
    EXPECT_EQ(sheet.bounds, cv::Rect(100, 200, 600, 300));
}

// 90 - 180 x (pi / 4) / 3.14, not 45.
TEST(SheetGeometry, DividesBy314Hundredths) {
    const SheetGeometry sheet = measureSheet({{{300, 400}, {100, 200}, {300, 0}, {500, 200}}});
    EXPECT_NEAR(sheet.angle, 44.97718, 1e-4);
    EXPECT_EQ(sheet.page, cv::Size(282, 282));
}

TEST(SheetGeometry, TakesTheFirstEdgeAsHeightUpTo45Degrees) {
    // 300 high and leaning to the left by atan(3/4) = 36.87 degrees.
    const SheetGeometry sheet =
        measureSheet({{{1000, 1000}, {820, 760}, {1220, 460}, {1400, 700}}});
    EXPECT_NEAR(sheet.angle, 36.87, 0.05);
    EXPECT_EQ(sheet.page, cv::Size(500, 300));
}

TEST(SheetGeometry, TakesTheFirstEdgeAsWidthAbove45Degrees) {
    // The first edge leans by 53.13 degrees: turning back by 36.87 makes it level.
    const SheetGeometry sheet =
        measureSheet({{{1000, 1000}, {760, 820}, {1060, 420}, {1300, 600}}});
    EXPECT_NEAR(sheet.angle, 270 + 53.13, 0.05);
    EXPECT_EQ(sheet.page, cv::Size(300, 500));
}

TEST(SheetGeometry, TruncatesTheSides) {
    // Sides of 14.14 and 28.28 pixels.
    const SheetGeometry sheet = measureSheet({{{10, 20}, {0, 10}, {20, -10}, {30, 0}}});
    EXPECT_EQ(sheet.page, cv::Size(28, 14));
}

TEST(SheetGeometry, ReachesNearly450ForAFirstEdgeLeaningRight) {
    const SheetGeometry sheet = measureSheet({{{0, 5000}, {1, 0}, {10, 0}, {9, 5000}}});
    EXPECT_GT(sheet.angle, 449.9F);
    EXPECT_LT(sheet.angle, 450.1F);
}

TEST(SheetGeometry, BoundsCornersInAnyOrder) {
    const SheetGeometry sheet = measureSheet({{{5, -7}, {300, 2}, {-4, 410}, {310, 400}}});
    EXPECT_EQ(sheet.bounds, cv::Rect(-4, -7, 314, 417));
}

TEST(SheetGeometry, SurvivesCornersAbsurdlyFarApart) {
    constexpr int kMin = std::numeric_limits<int>::min();
    constexpr int kMax = std::numeric_limits<int>::max();
    const SheetGeometry sheet =
        measureSheet({{{kMin, kMin}, {-1, -1}, {kMax, kMax}, {kMin, kMax}}});
    EXPECT_TRUE(sheet.page.width == kMax || sheet.page.height == kMax);
}

TEST(GetAngle, KeepsBoundsAndPageForTheStill) {
    int points[] = {1000, 1000, 760, 820, 1060, 420, 1300, 600};
    EXPECT_NEAR(GetAngle(points), 323.13, 0.05);
    EXPECT_EQ(state().sheet.CutImgStartX, 760);
    EXPECT_EQ(state().sheet.CutImgStartY, 420);
    EXPECT_EQ(state().sheet.CutImgW, 540);
    EXPECT_EQ(state().sheet.CutImgH, 580);
    EXPECT_EQ(state().sheet.CutLastW, 300);
    EXPECT_EQ(state().sheet.CutLastH, 500);
}

TEST(GetAngle, KeepsNothingForNull) {
    state().sheet.CutImgW = 77;
    EXPECT_EQ(GetAngle(nullptr), 0.0F);
    EXPECT_EQ(state().sheet.CutImgW, 77);
}

} // namespace
} // namespace doccam
