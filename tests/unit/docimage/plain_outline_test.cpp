// Finding and drawing the sheet's outline against the plain steps.
#include "cleaning_pictures.h"
#include "plain/outline.h"
#include "state/library_state.h"
#include "support/photographs.h"
#include "support/same_picture.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdint>

namespace doccam {
namespace {

constexpr int kDraw = 1;

void expectPlainOutline(const cv::Mat& frame) {
    cv::Mat actual = frame.clone();
    cv::Mat expected = frame.clone();
    const plain::Outline outline = plain::drawEdge(expected, kDraw);
    state().sheet.CutPoint.fill(0);
    ASSERT_EQ(DrawingEdge(actual.data, actual.cols, actual.rows, kDraw), outline.result);
    for (std::size_t i = 0; i < outline.corners.size(); ++i) {
        EXPECT_EQ(state().sheet.CutPoint[i], outline.corners[i]) << i;
    }
    EXPECT_TRUE(test::isSamePicture(actual, expected));
}

cv::Mat tiltedSheet(cv::Size size, float degrees, cv::RNG& random) {
    cv::Mat frame(size, CV_8UC3, cv::Scalar::all(random.uniform(0, 120)));
    const cv::RotatedRect sheet(
        cv::Point2f(random.uniform(0.3F, 0.7F) * static_cast<float>(size.width),
                    random.uniform(0.3F, 0.7F) * static_cast<float>(size.height)),
        cv::Size2f(0.6F * static_cast<float>(size.width), 0.5F * static_cast<float>(size.height)),
        degrees);
    cv::Point2f corners[4];
    sheet.points(corners);
    const std::vector<cv::Point> outline(corners, corners + 4);
    cv::fillConvexPoly(frame, outline, cv::Scalar(230, 220, 210));
    cv::Mat grain(size, CV_8UC3);
    random.fill(grain, cv::RNG::UNIFORM, 0, random.uniform(1, 60));
    return frame + grain;
}

TEST(DrawingEdgeOfPictures, EqualsThePlainStepsOnTiltedSheets) {
    cv::RNG random(40);
    for (int i = 0; i < 60; ++i) {
        const cv::Size size(320 + i % 7, 240 + i % 5);
        SCOPED_TRACE(testing::Message() << i << ": " << size);
        expectPlainOutline(tiltedSheet(size, static_cast<float>(3 * i - 90), random));
    }
}

TEST(DrawingEdgeOfPictures, EqualsThePlainStepsOnUprightSheets) {
    cv::RNG random(41);
    for (int i = 0; i < 20; ++i) {
        SCOPED_TRACE(i);
        expectPlainOutline(tiltedSheet({400 + 4 * i, 304}, 0, random));
    }
}

TEST(DrawingEdgeOfPictures, EqualsThePlainStepsOnScenes) {
    for (int i = 0; i < 40; ++i) {
        const cv::Size size(600 + 3 * i, 500 - i);
        SCOPED_TRACE(size);
        expectPlainOutline(test::drawnScene(size, static_cast<std::uint64_t>(i + 1)));
    }
}

TEST(DrawingEdgeOfPictures, EqualsThePlainStepsOnNoiseOfEverySmallSize) {
    for (int width = 4; width <= 40; ++width) {
        for (int height = 4; height <= 40; height += 3) {
            SCOPED_TRACE(cv::Size(width, height));
            expectPlainOutline(test::noise({width, height}, static_cast<std::uint64_t>(width)));
        }
    }
}

TEST(DrawingEdgeOfPictures, EqualsThePlainStepsOnLargeNoise) {
    expectPlainOutline(test::noise({1280, 960}, 6));
    expectPlainOutline(test::noise({1283, 961}, 7));
}

TEST(DrawingEdgeOfPictures, EqualsThePlainStepsOnPhotographs) {
    for (const auto& [name, photograph] : test::photographs()) {
        SCOPED_TRACE(name);
        expectPlainOutline(photograph);
        expectPlainOutline(photograph.t());
    }
}

} // namespace
} // namespace doccam
