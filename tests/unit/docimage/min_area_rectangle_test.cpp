#include "docimage/sheet/min_area_rectangle.h"
#include "drawn_shapes.h"

#include <gmock/gmock.h>
#include <opencv2/imgproc.hpp>
#include <opencv2/imgproc/imgproc_c.h>

#include <algorithm>
#include <cmath>

namespace doccam {
namespace {

using test::Contour;
using test::Shape;
using test::ShapeMaker;

cv::RotatedRect minAreaRectangle(const Contour& contour) {
    return MinAreaFit().around(contour);
}

constexpr int kShapesOfAKind = 1000;

// Single-precision rounding of a vertex, in pixels.
constexpr double kRounding = 0.05;

std::string named(const testing::TestParamInfo<Shape>& info) {
    constexpr const char* kNames[] = {"Upright", "Square", "Diamond",
                                      "Ragged",  "Tilted", "Polygon"};
    return kNames[static_cast<std::size_t>(info.param)];
}

double areaOf(const cv::RotatedRect& box) {
    return static_cast<double>(box.size.width) * box.size.height;
}

// The area of the rectangle around contour with one side along direction.
double areaAlong(const Contour& contour, cv::Point2d direction) {
    direction /= cv::norm(direction);
    const cv::Point2d normal(-direction.y, direction.x);
    double alongMin = 1e9, alongMax = -1e9, acrossMin = 1e9, acrossMax = -1e9;
    for (const cv::Point2d point : contour) {
        alongMin = std::min(alongMin, point.dot(direction));
        alongMax = std::max(alongMax, point.dot(direction));
        acrossMin = std::min(acrossMin, point.dot(normal));
        acrossMax = std::max(acrossMax, point.dot(normal));
    }
    return (alongMax - alongMin) * (acrossMax - acrossMin);
}

using Corners = std::array<cv::Point2f, 4>;

bool sameCorners(Corners a, Corners b, double tolerance) {
    for (int turn = 0; turn < 4; ++turn) {
        const bool near =
            std::equal(a.begin(), a.end(), b.begin(),
                       [=](cv::Point2f p, cv::Point2f q) { return cv::norm(p - q) <= tolerance; });
        if (near) {
            return true;
        }
        std::rotate(a.begin(), a.begin() + 1, a.end());
    }
    return false;
}

MATCHER_P2(IsNear, point, tolerance, "") {
    return cv::norm(cv::Point2f(arg) - cv::Point2f(point)) <= tolerance;
}

class EachShape : public testing::TestWithParam<Shape> {
  protected:
    template <typename Check>
    void forMany(Check&& check) {
        ShapeMaker maker(7);
        for (int i = 0; i < kShapesOfAKind && !HasFailure(); ++i) {
            SCOPED_TRACE(i);
            const Contour contour = maker.make(GetParam());
            check(contour, minAreaRectangle(contour));
        }
    }
};

INSTANTIATE_TEST_SUITE_P(MinAreaRectangle, EachShape, testing::ValuesIn(test::kShapes), named);

TEST_P(EachShape, HasAnAngleFromMinus90To0) {
    forMany([](const Contour&, const cv::RotatedRect& box) {
        EXPECT_GE(box.angle, -90.0F);
        EXPECT_LE(box.angle, 0.0F);
    });
}

TEST_P(EachShape, LiesInsideItsRectangle) {
    forMany([](const Contour& contour, const cv::RotatedRect& box) {
        const double radians = box.angle * CV_PI / 180;
        const cv::Point2d along(std::cos(radians), std::sin(radians));
        for (const cv::Point point : contour) {
            const cv::Point2d offset = cv::Point2d(point) - cv::Point2d(box.center);
            EXPECT_LE(std::abs(offset.dot(along)), box.size.width / 2 + kRounding);
            EXPECT_LE(std::abs(offset.cross(along)), box.size.height / 2 + kRounding);
        }
    });
}

// The smallest rectangle has a side along an edge of the hull; the steps between try the rest.
TEST_P(EachShape, HasNoSmallerRectangleAtAnyOtherAngle) {
    forMany([](const Contour& contour, const cv::RotatedRect& box) {
        const double minimum = areaOf(box) * (1 - 1e-4);
        for (int degrees = 0; degrees < 90; degrees += 3) {
            const double radians = degrees * CV_PI / 180;
            EXPECT_GE(areaAlong(contour, {std::cos(radians), std::sin(radians)}), minimum);
        }
        Contour hull;
        cv::convexHull(contour, hull);
        for (std::size_t i = 0; i < hull.size(); ++i) {
            EXPECT_GE(areaAlong(contour, hull[(i + 1) % hull.size()] - hull[i]), minimum);
        }
    });
}

TEST_P(EachShape, HasOpenCvsRectangleOrAnotherOfThatArea) {
    int others = 0;
    forMany([&](const Contour& contour, const cv::RotatedRect& box) {
        const cv::RotatedRect theirs = cv::minAreaRect(contour);
        if (!sameCorners(boxCorners(box), boxCorners(theirs), kRounding)) {
            ++others;
            EXPECT_NEAR(areaOf(box), areaOf(theirs), 2e-3 * areaOf(theirs));
        }
    });
    EXPECT_LE(others, kShapesOfAKind / 20);
}

TEST_P(EachShape, GivesTheSameBitsWhereverTheContourStarts) {
    forMany([](Contour contour, const cv::RotatedRect& box) {
        const auto middle = static_cast<std::ptrdiff_t>(contour.size() / 3);
        std::rotate(contour.begin(), contour.begin() + middle, contour.end());
        const cv::RotatedRect again = minAreaRectangle(contour);
        EXPECT_EQ(again.center, box.center);
        EXPECT_EQ(again.size, box.size);
        EXPECT_EQ(again.angle, box.angle);
    });
}

// This keeps pages upright: the first edge is the side that leans left of vertical.
TEST_P(EachShape, HasAFirstEdgeBetweenUpAndLeft) {
    forMany([](const Contour&, const cv::RotatedRect& box) {
        const Corners corners = boxCorners(box);
        EXPECT_LE(corners[1].x, corners[0].x);
        EXPECT_LE(corners[1].y, corners[0].y + 1e-4F);
    });
}

TEST_P(EachShape, HasCornersClockwiseFromTheHeightSide) {
    forMany([](const Contour&, const cv::RotatedRect& box) {
        const Corners corners = boxCorners(box);
        EXPECT_NEAR(cv::norm(corners[1] - corners[0]), box.size.height, 1e-3);
        EXPECT_NEAR(cv::norm(corners[2] - corners[1]), box.size.width, 1e-3);
        EXPECT_GT((corners[1] - corners[0]).cross(corners[2] - corners[1]), 0);
    });
}

TEST_P(EachShape, HasTheCornersOfTheCInterface) {
    forMany([](const Contour&, const cv::RotatedRect& box) {
        CvPoint2D32f theirs[4] = {};
        cvBoxPoints(cvBox2D(box), theirs);
        const Corners ours = boxCorners(box);
        for (std::size_t i = 0; i < ours.size(); ++i) {
            EXPECT_EQ(ours[i], cv::Point2f(theirs[i].x, theirs[i].y));
        }
    });
}

TEST(MinAreaFit, IsIndependentOfTheContourBefore) {
    ShapeMaker maker(11);
    MinAreaFit fit;
    for (int i = 0; i < 200; ++i) {
        const Contour contour = maker.make(test::kShapes[static_cast<std::size_t>(i) % 6]);
        const cv::RotatedRect box = fit.around(contour);
        const cv::RotatedRect alone = minAreaRectangle(contour);
        EXPECT_EQ(box.center, alone.center);
        EXPECT_EQ(box.size, alone.size);
        EXPECT_EQ(box.angle, alone.angle);
    }
}

// All four sides of an upright rectangle give the same area; the last one tried counts.
TEST(MinAreaRectangle, LiesOnItsSideForAnUprightRectangle) {
    const cv::RotatedRect box = minAreaRectangle({{10, 20}, {50, 20}, {50, 40}, {10, 40}});
    EXPECT_EQ(box.angle, -90.0F);
    EXPECT_EQ(box.center, cv::Point2f(30, 30));
    EXPECT_EQ(box.size, cv::Size2f(20, 40));
    const Corners corners = boxCorners(box);
    EXPECT_THAT(corners[0], IsNear(cv::Point(50, 40), 1e-4));
    EXPECT_THAT(corners[1], IsNear(cv::Point(10, 40), 1e-4));
    EXPECT_THAT(corners[2], IsNear(cv::Point(10, 20), 1e-4));
    EXPECT_THAT(corners[3], IsNear(cv::Point(50, 20), 1e-4));
}

TEST(MinAreaRectangle, StartsAtTheLowestCornerOfADiamond) {
    const cv::RotatedRect box = minAreaRectangle({{20, 50}, {50, 20}, {80, 50}, {50, 80}});
    EXPECT_NEAR(box.angle, -45, 1e-4);
    const Corners corners = boxCorners(box);
    EXPECT_THAT(corners[0], IsNear(cv::Point(50, 80), 1e-3));
    EXPECT_THAT(corners[1], IsNear(cv::Point(20, 50), 1e-3));
}

TEST(MinAreaRectangle, TurnsWithTheShape) {
    for (int degrees = -89; degrees < 90; ++degrees) {
        SCOPED_TRACE(degrees);
        const double radians = degrees * CV_PI / 180;
        const cv::Point2d along(100000 * std::cos(radians), 100000 * std::sin(radians));
        const cv::Point2d down(-along.y / 2, along.x / 2);
        const cv::RotatedRect box = minAreaRectangle({{0, 0}, along, along + down, down});
        const bool risesToTheRight = degrees < 0;
        EXPECT_NEAR(box.angle, risesToTheRight ? degrees : degrees - 90, 0.01);
        EXPECT_NEAR(box.size.width, risesToTheRight ? 100000 : 50000, 2);
    }
}

TEST(MinAreaRectangle, HasNoExtentForALineAPointOrNothing) {
    EXPECT_EQ(minAreaRectangle({{3, 4}, {5, 6}, {7, 8}}).center, cv::Point2f(3, 4));
    EXPECT_EQ(minAreaRectangle({{3, 4}, {5, 6}, {7, 8}}).size, cv::Size2f());
    EXPECT_EQ(minAreaRectangle({{3, 4}}).center, cv::Point2f(3, 4));
    EXPECT_EQ(minAreaRectangle({}).size, cv::Size2f());
}

} // namespace
} // namespace doccam
