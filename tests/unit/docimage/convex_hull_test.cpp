// Convex hulls against OpenCV's.
#include "docimage/sheet/min_area_rectangle.h"
#include "drawn_shapes.h"

#include <gmock/gmock.h>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace {

using doccam::test::Contour;
using testing::ElementsAre;
using testing::IsEmpty;

bool liesFurtherLeft(cv::Point a, cv::Point b) {
    return a.x < b.x || (a.x == b.x && a.y < b.y);
}

Contour librarysHull(const Contour& points) {
    Contour hull;
    cv::convexHull(points, hull, true, true);
    std::rotate(hull.begin(), std::min_element(hull.begin(), hull.end(), liesFurtherLeft),
                hull.end());
    return hull;
}

Contour hullOf(Contour points) {
    Contour hull = {{77, 77}};
    doccam::findConvexHull(points, hull);
    return hull;
}

class HullOfEachShape : public testing::TestWithParam<doccam::test::Shape> {};

INSTANTIATE_TEST_SUITE_P(FindConvexHull, HullOfEachShape, testing::ValuesIn(doccam::test::kShapes));

TEST_P(HullOfEachShape, EqualsOpenCvs) {
    doccam::test::ShapeMaker maker(3);
    for (int i = 0; i < 1000; ++i) {
        const Contour contour = maker.make(GetParam());
        ASSERT_EQ(hullOf(contour), librarysHull(contour)) << i;
    }
}

// Many points on few positions: duplicates and collinear ones abound.
TEST(FindConvexHull, EqualsOpenCvsForCrowdedPoints) {
    cv::RNG random(8);
    for (int i = 0; i < 5000; ++i) {
        const int side = random.uniform(2, 30);
        Contour points(static_cast<std::size_t>(random.uniform(1, 60)));
        for (cv::Point& point : points) {
            point = {random.uniform(0, side), random.uniform(0, side)};
        }
        const Contour expected = librarysHull(points);
        if (expected.size() > 2) {
            ASSERT_EQ(hullOf(points), expected) << i;
        } else {
            ASSERT_LE(hullOf(points).size(), 2U) << i;
        }
    }
}

TEST(FindConvexHull, GoesDownFirst) {
    EXPECT_THAT(hullOf({{10, 0}, {0, 0}, {10, 5}, {0, 5}, {5, 0}}),
                ElementsAre(cv::Point(0, 0), cv::Point(0, 5), cv::Point(10, 5), cv::Point(10, 0)));
}

TEST(FindConvexHull, OfALineIsItsEnds) {
    EXPECT_THAT(hullOf({{2, 2}, {4, 4}, {3, 3}}), ElementsAre(cv::Point(2, 2), cv::Point(4, 4)));
    EXPECT_THAT(hullOf({{2, 2}, {2, 2}, {2, 2}}), ElementsAre(cv::Point(2, 2)));
    EXPECT_THAT(hullOf({}), IsEmpty());
}

} // namespace
