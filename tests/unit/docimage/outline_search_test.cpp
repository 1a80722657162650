#include "docimage/clean/outline_search.h"
#include "docimage/sheet/contour_sequences.h"
#include "docimage/sheet/min_area_rectangle.h"

#include <gmock/gmock.h>
#include <opencv2/imgproc/imgproc_c.h>

#include <cmath>
#include <vector>

namespace doccam {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Optional;

TEST(IndexOfLargest, TakesTheFirstOfEqualAreas) {
    EXPECT_THAT(indexOfLargest({500, 900, 900, 401}), Optional(std::size_t{1}));
}

TEST(IndexOfLargest, IsNoneForAnEmptyList) {
    EXPECT_EQ(indexOfLargest({}), std::nullopt);
}

TEST(FrameCorners, AreFourTimesThoseOfTheReducedOutline) {
    const SheetCorners corners =
        wholePixels(frameCorners(minAreaRectangle({{20, 50}, {50, 20}, {80, 50}, {50, 80}})));
    EXPECT_NEAR(corners[0].x, 200, 1);
    EXPECT_NEAR(corners[0].y, 320, 1);
    EXPECT_NEAR(corners[1].x, 80, 1);
    EXPECT_NEAR(corners[1].y, 200, 1);
}

TEST(WholePixels, CutsFractionsOffTowardZero) {
    const SheetCorners corners =
        wholePixels({cv::Point2f(-1.75F, 3.99F), {-0.5F, 0.5F}, {7, -7}, {2.5F, -3.01F}});
    EXPECT_THAT(corners,
                ElementsAre(cv::Point(-1, 3), cv::Point(0, 0), cv::Point(7, -7), cv::Point(2, -3)));
}

TEST(ContourSequences, AreWhatTheCInterfaceTakes) {
    const std::vector<cv::Point> large = {{0, 0}, {30, 0}, {30, 20}, {0, 20}};
    const std::vector<cv::Point> small = {{5, 5}, {6, 5}, {6, 6}};
    ContourSequences sequences;
    for (int round = 0; round < 3; ++round) {
        sequences.reset(2);
        CvSeq* const first = sequences.add(large);
        CvSeq* const second = sequences.add(small);
        EXPECT_EQ(std::fabs(cvContourArea(first)), 600);
        EXPECT_EQ(std::fabs(cvContourArea(second)), 0.5);
        EXPECT_THAT(pointsOf(*first), ElementsAreArray(large));
        EXPECT_THAT(pointsOf(*second), ElementsAreArray(small));
    }
}

} // namespace
} // namespace doccam
