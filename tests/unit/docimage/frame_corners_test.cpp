#include "docimage/sheet/edge_overlay.h"
#include "docimage/sheet/min_area_rectangle.h"

#include <gmock/gmock.h>

#include <vector>

namespace doccam {
namespace {

using testing::ElementsAre;

TEST(FrameCorners, AreFourTimesThoseOfTheReducedOutline) {
    const std::vector<cv::Point> outline = {{20, 50}, {50, 20}, {80, 50}, {50, 80}};
    const SheetCorners corners = wholePixels(frameCorners(MinAreaFit().around(outline)));
    EXPECT_NEAR(corners[0].x, 200, 1);
    EXPECT_NEAR(corners[0].y, 320, 1);
    EXPECT_NEAR(corners[1].x, 80, 1);
    EXPECT_NEAR(corners[1].y, 200, 1);
}

TEST(WholePixels, TruncatesTowardZero) {
    const SheetCorners corners =
        wholePixels({cv::Point2f(-1.75F, 3.99F), {-0.5F, 0.5F}, {7, -7}, {2.5F, -3.01F}});
    EXPECT_THAT(corners,
                ElementsAre(cv::Point(-1, 3), cv::Point(0, 0), cv::Point(7, -7), cv::Point(2, -3)));
}

} // namespace
} // namespace doccam
