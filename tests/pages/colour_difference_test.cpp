#include "colour_difference.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace doccam::test {

namespace {

// Pairs from the data that Sharma, Wu and Dalal published with their notes on the formula.
TEST(ColourDifference, AgreesWithPublishedPairs) {
    EXPECT_NEAR(colourDifference({50, 2.6772, -79.7751}, {50, 0, -82.7485}), 2.0425, 1e-4);
    EXPECT_NEAR(colourDifference({50, 2.49, -0.001}, {50, -2.49, 0.0011}), 7.2195, 1e-4);
    EXPECT_NEAR(colourDifference({50, 2.5, 0}, {73, 25, -18}), 27.1492, 1e-4);
    EXPECT_NEAR(colourDifference({60.2574, -34.0099, 36.2677}, {60.4626, -34.1751, 39.4387}),
                1.2644, 1e-4);
    EXPECT_NEAR(colourDifference({2.0776, 0.0795, -1.135}, {0.9033, -0.0636, -0.5514}), 0.9082,
                1e-4);
}

TEST(ColourDifference, IsNothingBetweenEqualGreys) {
    EXPECT_EQ(colourDifference({40, 0, 0}, {40, 0, 0}), 0);
}

TEST(MeanColour, CountsOnlyWhatTheMaskShows) {
    cv::Mat picture(10, 10, CV_8UC3, cv::Scalar::all(255));
    picture.colRange(5, 10).setTo(cv::Scalar::all(0));
    cv::Mat mask(picture.size(), CV_8U, cv::Scalar(0));
    mask.colRange(0, 5).setTo(255);
    EXPECT_NEAR(meanColour(picture, mask)[0], 100, 0.01);
}

TEST(StructuralSimilarity, FallsWhenDetailIsLost) {
    cv::Mat picture(80, 80, CV_8UC3);
    cv::RNG random(3);
    random.fill(picture, cv::RNG::UNIFORM, 0, 255);
    cv::Mat soft;
    cv::GaussianBlur(picture, soft, {}, 2);
    EXPECT_NEAR(structuralSimilarity(picture, picture), 1, 1e-6);
    EXPECT_LT(structuralSimilarity(picture, soft), 0.5);
}

} // namespace

} // namespace doccam::test
