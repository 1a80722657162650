// The parts of the search for sheets.
#include "page/fit/side_fit.h"
#include "page/search/judgement.h"
#include "page/search/reduced_colours.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace doccam::test {
namespace {

using page::Corners;

TEST(ReducedColours, AreTheMeansOfBlocksAsLightnessAndDifferences) {
    cv::Mat picture(61, 83, CV_8UC3);
    cv::randu(picture, 0, 256);
    for (const int factor : {1, 2, 5, 8}) {
        const cv::Mat colours = page::reducedColours(picture, factor);
        ASSERT_EQ(colours.size(), cv::Size(83 / factor, 61 / factor));
        for (int y = 0; y < colours.rows; ++y) {
            for (int x = 0; x < colours.cols; ++x) {
                const cv::Scalar mean =
                    cv::mean(picture(cv::Rect(x * factor, y * factor, factor, factor)));
                const auto colour = colours.at<cv::Vec3f>(y, x);
                ASSERT_NEAR(colour[0], 0.114 * mean[0] + 0.587 * mean[1] + 0.299 * mean[2], 1e-3);
                ASSERT_NEAR(colour[1], mean[2] - mean[1], 1e-3);
                ASSERT_NEAR(colour[2], mean[0] - (mean[1] + mean[2]) / 2, 1e-3);
            }
        }
    }
}

TEST(ReducedColours, OfGreyHaveNoDifferences) {
    const cv::Mat colours = page::reducedColours(cv::Mat(9, 9, CV_8U, cv::Scalar(77)), 3);
    EXPECT_EQ(cv::norm(colours, cv::Mat(3, 3, CV_32FC3, cv::Scalar(77, 0, 0)), cv::NORM_INF), 0);
}

// A sheet of 800 x 600 whose lower side is followed, on a brown desk.
class FittedSheet : public testing::Test {
  protected:
    double lowerRightCorner() const {
        const auto fitted = page::fitSides(picture_, corners_, 12);
        return fitted ? fitted->corners[2].y : -1;
    }

    void paint(const std::vector<cv::Point>& outline, const cv::Scalar& colour) {
        cv::fillPoly(picture_, std::vector<std::vector<cv::Point>>{outline}, colour);
    }

    const Corners corners_{{{200, 150}, {1000, 150}, {1000, 750}, {200, 750}}};
    const cv::Scalar paper_{240, 240, 240};
    const cv::Scalar desk_{50, 80, 110};
    cv::Mat picture_ = [this] {
        cv::Mat picture(900, 1200, CV_8UC3, desk_);
        cv::rectangle(picture, {200, 150}, {1000, 750}, paper_, cv::FILLED);
        return picture;
    }();
};

TEST_F(FittedSheet, EndsWhereThePaperEnds) {
    EXPECT_NEAR(lowerRightCorner(), 750.5, 0.5);
}

TEST_F(FittedSheet, FollowsPaperThatCurls) {
    paint({{700, 751}, {800, 754}, {900, 762}, {1000, 772}, {1000, 751}}, paper_);
    EXPECT_NEAR(lowerRightCorner(), 772, 2.5);
}

TEST_F(FittedSheet, DoesNotFollowAFinger) {
    paint({{700, 751}, {800, 754}, {900, 762}, {1000, 772}, {1000, 751}}, {130, 160, 215});
    EXPECT_NEAR(lowerRightCorner(), 750.5, 2.5);
}

TEST(Confidence, IsHalfWhereBothAreEquallyLikely) {
    EXPECT_DOUBLE_EQ(page::confidenceOf(0), 0.5);
    EXPECT_LT(page::confidenceOf(-1), 0.5);
    EXPECT_GT(page::confidenceOf(40), 0.999);
}

} // namespace
} // namespace doccam::test
