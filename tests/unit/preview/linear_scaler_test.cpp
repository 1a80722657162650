// Scaled pictures against OpenCV's.
#include "preview/linear_scaler.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdint>

namespace doccam {
namespace {

cv::Mat resized(const cv::Mat& source, cv::Size size) {
    cv::Mat target;
    cv::resize(source, target, size, 0, 0, cv::INTER_LINEAR);
    return target;
}

void expectLibrarysPicture(LinearScaler& scaler, const cv::Mat& source, cv::Size size) {
    SCOPED_TRACE(testing::Message() << source.size() << " to " << size);
    cv::Mat target(size, CV_8UC3, cv::Scalar::all(99));
    scaler.scale(source, target);
    ASSERT_EQ(cv::norm(target, resized(source, size), cv::NORM_INF), 0);
}

cv::Mat noisy(cv::Size size) {
    cv::Mat source(size, CV_8UC3);
    cv::RNG(static_cast<std::uint64_t>(size.area() + 1)).fill(source, cv::RNG::UNIFORM, 0, 256);
    return source;
}

TEST(LinearScaler, EqualsOpenCvFromAnySizeToAnySize) {
    LinearScaler scaler;
    cv::RNG random(20);
    for (int i = 0; i < 600; ++i) {
        const cv::Size from(random.uniform(1, 300), random.uniform(1, 250));
        expectLibrarysPicture(scaler, noisy(from),
                              {random.uniform(1, 400), random.uniform(1, 300)});
    }
}

TEST(LinearScaler, EqualsOpenCvAtWholeRatios) {
    LinearScaler scaler;
    const cv::Mat source = noisy({240, 120});
    for (const int across : {1, 2, 3, 4, 5, 6, 8}) {
        for (const int down : {1, 2, 3, 4, 5, 6, 8}) {
            expectLibrarysPicture(scaler, source, {240 / across, 120 / down});
            expectLibrarysPicture(scaler, source, {240 * across, 120 * down});
        }
    }
}

TEST(LinearScaler, EqualsOpenCvForTheNarrowestSources) {
    LinearScaler scaler;
    for (int width = 1; width <= 4; ++width) {
        for (int height = 1; height <= 4; ++height) {
            for (int side = 1; side <= 30; ++side) {
                expectLibrarysPicture(scaler, noisy({width, height}), {side, 31 - side});
            }
        }
    }
}

TEST(LinearScaler, EqualsOpenCvForAWholeFrame) {
    LinearScaler scaler;
    const cv::Mat frame = noisy({3264, 2448});
    for (const cv::Size size : {cv::Size(800, 600), {1632, 1224}, {1200, 900}, {4000, 3000}}) {
        expectLibrarysPicture(scaler, frame, size);
    }
    expectLibrarysPicture(scaler, frame(cv::Rect(501, 303, 1333, 999)), {800, 600});
}

TEST(LinearScaler, StaysWithinPartOfALargerTarget) {
    LinearScaler scaler;
    const cv::Mat source = noisy({64, 48});
    cv::Mat larger(100, 100, CV_8UC3, cv::Scalar::all(7));
    const cv::Mat expected = larger.clone();
    const cv::Rect part(20, 30, 41, 37);
    resized(source, part.size()).copyTo(expected(part));
    cv::Mat view = larger(part);
    scaler.scale(source, view);
    EXPECT_EQ(cv::norm(larger, expected, cv::NORM_INF), 0);
}

TEST(LinearScaler, ThrowsForEmptyPictures) {
    LinearScaler scaler;
    cv::Mat none;
    cv::Mat some(4, 4, CV_8UC3);
    EXPECT_THROW(scaler.scale(none, some), cv::Exception);
    EXPECT_THROW(scaler.scale(some, none), cv::Exception);
}

TEST(LinearScaler, CannotScaleOtherTypes) {
    const cv::Mat colour(4, 4, CV_8UC3);
    EXPECT_TRUE(LinearScaler::canScale(colour, colour));
    EXPECT_FALSE(LinearScaler::canScale(colour, cv::Mat(4, 4, CV_8UC1)));
    EXPECT_FALSE(LinearScaler::canScale(cv::Mat(4, 4, CV_16UC3), colour));
}

} // namespace
} // namespace doccam
