// The parts of the search for sheets.
#include "page/fit/side_fit.h"
#include "page/search/evidence/reduced_colours.h"
#include "page/search/judgement/judgement.h"
#include "page/search/refined_sides.h"

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

// On a desk as pale as the paper the shadow ends at a fainter edge than it begins.
TEST_F(FittedSheet, EndsWhereItsShadowBegins) {
    constexpr int kShadow = 40;
    picture_.setTo(cv::Scalar(199, 200, 195));
    for (int row = 0; row < kShadow; ++row) {
        const double light = 158 + 42.0 * row / kShadow;
        picture_(cv::Rect(190, 751 + row, 820, 1)).setTo(cv::Scalar(light + 3, light + 4, light));
    }
    cv::rectangle(picture_, {200, 150}, {1000, 750}, {194, 189, 204}, cv::FILLED);
    Corners outside = corners_;
    outside[2].y = outside[3].y = 764;
    const auto fitted = page::fitSides(picture_, outside, 13);
    ASSERT_TRUE(fitted);
    EXPECT_NEAR(fitted->corners[2].y, 750.5, 0.5);
    EXPECT_NEAR(fitted->corners[3].y, 750.5, 0.5);
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

// Stripes that pass a small sheet pull the lines through the picture off its sides.
TEST(RefinedSides, AreThoseOfTheSheetBetweenItsCorners) {
    cv::Mat picture(600, 800, CV_8UC3, cv::Scalar(60, 70, 90));
    for (int x = 0; x < picture.cols; x += 60) {
        picture.colRange(x, x + 20).setTo(cv::Scalar(150, 140, 120));
    }
    const Corners sheet{{{300, 200}, {523, 209}, {514, 350}, {291, 341}}};
    std::vector<cv::Point> outline(sheet.begin(), sheet.end());
    cv::fillConvexPoly(picture, outline, cv::Scalar(235, 235, 240), cv::LINE_AA);
    const page::Evidence evidence = page::evidenceOf(picture);
    ASSERT_EQ(evidence.factor, 1);
    Corners near = sheet;
    near[0] += cv::Point2d(-2, 1.5);
    near[1] += cv::Point2d(1.5, 2);
    near[2] += cv::Point2d(1, -2);
    const page::Candidate refined = page::withRefinedSides(near, evidence);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_LE(cv::norm(refined.corners[i] - sheet[i]), 1.5) << i;
    }
    EXPECT_GT(refined.support.mean, 0.95);
}

} // namespace
} // namespace doccam::test
