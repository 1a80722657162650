// Turned pictures and parts of them against OpenCV's.
#include "cleaning_pictures.h"
#include "docimage/turn/rotation_kernels.h"
#include "docimage/turn/turned_picture.h"
#include "plain/page.h"
#include "support/same_picture.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace doccam {
namespace {

using test::isSamePicture;

const std::vector<float> kAngles = {0,    360,   90,  180, 270,    45,     0.01F, 359.99F,
                                    0.5F, 12.3F, -30, -91, 315.7F, 449.9F, 60,    134.2F};

cv::Mat rendered(const TurnedPicture& picture, const cv::Rect& part, SampleOrder order) {
    cv::Mat target(part.size(), CV_8UC3, cv::Scalar::all(99));
    picture.render(part, target, order);
    return target;
}

TEST(TurnedPicture, EqualsOpenCvsAtEachAngleAndSize) {
    for (const cv::Size size : {cv::Size(1, 1), {2, 1}, {1, 7}, {3, 3}, {40, 26}, {131, 97}}) {
        const cv::Mat picture = test::noise(size, 4);
        for (const float degrees : kAngles) {
            SCOPED_TRACE(testing::Message() << size << ' ' << degrees);
            EXPECT_TRUE(
                isSamePicture(rotateImage(picture, degrees), plain::turned(picture, degrees)));
        }
    }
}

TEST(TurnedPicture, EqualsOpenCvsForALargePicture) {
    const cv::Mat picture = test::noise({1001, 803}, 5);
    for (int i = 0; i < 30; ++i) {
        const float degrees = 12.37F * static_cast<float>(i);
        SCOPED_TRACE(degrees);
        EXPECT_TRUE(isSamePicture(rotateImage(picture, degrees), plain::turned(picture, degrees)));
    }
}

TEST(TurnedPicture, OfPartOfALargerPictureShowsThatPartOnly) {
    const cv::Mat larger = test::noise({300, 200}, 6);
    const cv::Mat part = larger(cv::Rect(20, 30, 101, 90));
    EXPECT_TRUE(isSamePicture(rotateImage(part, 33), plain::turned(part.clone(), 33)));
}

TEST(TurnedPicture, RendersAnyPartInEitherOrder) {
    const cv::Mat pixels = test::noise({160, 120}, 7);
    cv::RNG random(8);
    for (const float degrees : kAngles) {
        const cv::Mat whole = plain::turned(pixels, degrees);
        const TurnedPicture picture({pixels, {}, pixels.size()}, degrees);
        ASSERT_EQ(picture.size(), whole.size());
        for (int i = 0; i < 20; ++i) {
            const cv::Point from(random.uniform(0, whole.cols), random.uniform(0, whole.rows));
            const cv::Rect part(from, cv::Point(random.uniform(from.x, whole.cols) + 1,
                                                random.uniform(from.y, whole.rows) + 1));
            SCOPED_TRACE(testing::Message() << degrees << ' ' << part);
            ASSERT_TRUE(isSamePicture(rendered(picture, part, SampleOrder::kKept), whole(part)));
            cv::Mat reversed;
            cv::cvtColor(whole(part), reversed, cv::COLOR_RGB2BGR);
            ASSERT_TRUE(isSamePicture(rendered(picture, part, SampleOrder::kReversed), reversed));
        }
    }
}

TEST(TurnedPicture, IsBlackAroundThePixelsOfARegion) {
    const cv::Mat pixels = test::noise({70, 50}, 9);
    cv::Mat region;
    cv::copyMakeBorder(pixels, region, 11, 0, 23, 6, cv::BORDER_CONSTANT, cv::Scalar(0));
    for (const float degrees : kAngles) {
        SCOPED_TRACE(degrees);
        const TurnedPicture picture({pixels, {23, 11}, region.size()}, degrees);
        const cv::Mat expected = plain::turned(region, degrees);
        ASSERT_EQ(picture.size(), expected.size());
        EXPECT_TRUE(
            isSamePicture(rendered(picture, {{}, picture.size()}, SampleOrder::kKept), expected));
    }
}

TEST(TurnedPicture, ThrowsForAPartOutsideItsCanvas) {
    const cv::Mat pixels = test::noise({20, 10}, 1);
    const TurnedPicture picture({pixels, {}, pixels.size()}, 0);
    EXPECT_THROW(rendered(picture, {1, 0, 20, 10}, SampleOrder::kKept), cv::Exception);
    EXPECT_THROW(rendered(picture, {-1, 0, 5, 5}, SampleOrder::kKept), cv::Exception);
}

TEST(TurnedPicture, ThrowsForAnAngleThatIsNotFinite) {
    const cv::Mat pixels = test::noise({20, 10}, 1);
    const float none = std::numeric_limits<float>::quiet_NaN();
    EXPECT_THROW(TurnedPicture({pixels, {}, pixels.size()}, none), cv::Exception);
}

TEST(TurnedPicture, RefusesOtherPixelTypes) {
    const auto canRender = [](const cv::Mat& pixels) {
        return TurnedPicture::canRender({pixels, {}, pixels.size()});
    };
    EXPECT_TRUE(canRender(cv::Mat(1, 1, CV_8UC3)));
    EXPECT_TRUE(canRender(cv::Mat(1, 16384, CV_8UC3)));
    EXPECT_FALSE(canRender(cv::Mat(1, 16385, CV_8UC3)));
    EXPECT_FALSE(canRender(cv::Mat(4, 4, CV_8UC1)));
    EXPECT_FALSE(canRender(cv::Mat(4, 4, CV_8UC4)));
    EXPECT_FALSE(canRender(cv::Mat()));
}

TEST(TurnedPicture, RefusesPicturesOfMoreBytesThanAnIntHolds) {
    cv::Vec3b pixel; // the size alone is checked
    const auto canRender = [&](int rows, std::size_t step) {
        const cv::Mat pixels(rows, 1, CV_8UC3, pixel.val, step);
        return TurnedPicture::canRender({pixels, {}, pixels.size()});
    };
    EXPECT_TRUE(canRender(16384, (1 << 17) - 1));
    EXPECT_FALSE(canRender(16384, 1 << 17));
}

TEST(RotateImageOfOtherKinds, EqualsOpenCvs) {
    for (const int type : {CV_8UC1, CV_8UC4, CV_16UC3, CV_32FC1}) {
        cv::Mat picture(30, 41, type);
        cv::RNG(3).fill(picture, cv::RNG::UNIFORM, 0, 200);
        EXPECT_TRUE(isSamePicture(rotateImage(picture, 20), plain::turned(picture, 20)));
    }
}

class EachRotationKernel : public testing::TestWithParam<RotationKernels> {};

std::string nameOfRows(const testing::TestParamInfo<RotationKernels>& rows) {
    return rows.param.instructionSet;
}

INSTANTIATE_TEST_SUITE_P(RotationKernels, EachRotationKernel,
                         testing::ValuesIn(allRotationKernels()), nameOfRows);

// Every fraction of a pixel, in both directions, in rows of every length.
TEST_P(EachRotationKernel, BlendTheFourPixelsAroundEachPosition) {
    const cv::Mat pixels = test::noise({200, 3}, 10);
    for (int count = 1; count <= 150; ++count) {
        std::vector<int> across, down;
        for (int i = 0; i < count; ++i) {
            across.push_back((i << kPlaceShift) + 32 * ((i * 7 + count) % 32) + i % 32);
            down.push_back(32 * ((i * 3 + count / 5) % 32));
        }
        const RotationRow row{pixels.data,
                              static_cast<int>(pixels.step),
                              1 << kPlaceShift,
                              0,
                              across.data(),
                              down.data(),
                              count};
        std::vector<cv::Vec3b> blended(static_cast<std::size_t>(count) + 1, cv::Vec3b::all(9));
        GetParam().blend(row, SampleOrder::kKept, blended.data()->val);
        for (int i = 0; i < count; ++i) {
            const auto n = static_cast<std::size_t>(i);
            const int x = 1 + (across[n] >> kPlaceShift);
            const double right = (across[n] >> 5 & 31) / 32.0;
            const double below = (down[n] >> 5 & 31) / 32.0;
            for (int c = 0; c < 3; ++c) {
                const auto at = [&](int dx, int dy) {
                    return static_cast<double>(pixels.at<cv::Vec3b>(dy, x + dx)[c]);
                };
                const double upper = at(0, 0) * (1 - right) + at(1, 0) * right;
                const double lower = at(0, 1) * (1 - right) + at(1, 1) * right;
                const double sample = upper * (1 - below) + lower * below;
                ASSERT_EQ(blended[n][c], static_cast<int>(sample + 0.5)) << i << ' ' << count;
            }
        }
        ASSERT_EQ(blended.back(), cv::Vec3b::all(9));
    }
}

} // namespace
} // namespace doccam
