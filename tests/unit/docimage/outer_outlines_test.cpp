// The outer outlines of regions, against OpenCV's contours.
#include "docimage/clean/sheet_outline.h"
#include "docimage/sheet/outer_outlines.h"
#include "support/same_picture.h"

#include <gmock/gmock.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace {

using doccam::OuterOutlines;
using testing::ElementsAre;
using Contour = std::vector<cv::Point>;

void clearFrame(cv::Mat& picture) {
    cv::rectangle(picture, {0, 0, picture.cols, picture.rows}, 0);
}

// Black and white, with a black frame.
cv::Mat speckles(cv::Size size, double share, std::uint64_t seed) {
    cv::Mat picture(size, CV_8UC1);
    cv::RNG(seed).fill(picture, cv::RNG::UNIFORM, 0.0, 1.0 / share);
    picture = picture == 0;
    clearFrame(picture);
    return picture;
}

// Shapes with holes, and shapes in the holes.
cv::Mat shapes(cv::Size size, std::uint64_t seed) {
    cv::RNG random(seed);
    cv::Mat picture(size, CV_8UC1, cv::Scalar(0));
    for (int i = 0; i < 30; ++i) {
        const cv::Point centre(random.uniform(0, size.width), random.uniform(0, size.height));
        const cv::Size axes(random.uniform(1, size.width / 3 + 2),
                            random.uniform(1, size.height / 3 + 2));
        cv::ellipse(picture, centre, axes, random.uniform(0, 180), 0, 360, i % 2 == 0 ? 255 : 0,
                    random.uniform(-1, 4));
    }
    clearFrame(picture);
    return picture;
}

std::vector<Contour> expectedOutlines(const cv::Mat& picture) {
    std::vector<Contour> contours;
    cv::findContours(picture, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    std::reverse(contours.begin(), contours.end());
    return contours;
}

void expectLibrarysOutlines(const cv::Mat& picture) {
    const std::vector<Contour> expected = expectedOutlines(picture);
    cv::Mat binary = picture / 255;
    OuterOutlines outlines;
    outlines.search(binary);
    ASSERT_EQ(outlines.count(), expected.size());
    ASSERT_EQ(outlines.empty(), expected.empty());
    cv::Mat drawn(picture.size(), CV_8UC1, cv::Scalar(0));
    cv::Mat expectedDrawing = drawn.clone();
    for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(Contour(outlines[i].begin(), outlines[i].end()), expected[i]) << i;
        ASSERT_EQ(doccam::enclosedArea(outlines[i]),
                  static_cast<int>(cv::contourArea(expected[i])));
        doccam::drawOutline(outlines[i], drawn);
        cv::drawContours(expectedDrawing, expected, static_cast<int>(i), 255, 2);
    }
    ASSERT_TRUE(doccam::test::isSamePicture(drawn, expectedDrawing));
}

TEST(OuterOutlines, EqualOpenCvsContoursOfSpeckles) {
    for (int width = 1; width <= 40; ++width) {
        for (const double share : {0.05, 0.2, 0.5, 0.8, 0.95}) {
            SCOPED_TRACE(testing::Message() << "width " << width << ", share " << share);
            expectLibrarysOutlines(
                speckles({width, 1 + width * 7 % 33}, share, static_cast<std::uint64_t>(width)));
        }
    }
}

TEST(OuterOutlines, EqualOpenCvsContoursOfShapesInHoles) {
    for (int i = 0; i < 200; ++i) {
        SCOPED_TRACE(i);
        expectLibrarysOutlines(shapes({20 + i, 220 - i}, static_cast<std::uint64_t>(i + 1)));
    }
}

TEST(OuterOutlines, OfALoneSpeckAreItsOnlyPoint) {
    cv::Mat binary(3, 3, CV_8UC1, cv::Scalar(0));
    binary.at<uchar>(1, 1) = 1;
    OuterOutlines outlines;
    outlines.search(binary);
    ASSERT_EQ(outlines.count(), 1U);
    EXPECT_THAT(outlines[0], ElementsAre(cv::Point(1, 1)));
    EXPECT_EQ(doccam::enclosedArea(outlines[0]), 0);
}

TEST(OuterOutlines, ForgetThoseOfTheSearchBefore) {
    cv::Mat binary(5, 5, CV_8UC1, cv::Scalar(0));
    binary.at<uchar>(2, 2) = 1;
    OuterOutlines outlines;
    outlines.search(binary);
    binary.setTo(0);
    outlines.search(binary);
    EXPECT_TRUE(outlines.empty());
}

} // namespace
