// Encoding the form as a JPEG.
#include "serve/live/picture_encoder.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

namespace doccam::serve {
namespace {

constexpr int kTolerance = 4;

constexpr host::Size kForm{64, 48};

FormPicture withRed(const cv::Rect& place) {
    std::vector<unsigned char> picture;
    for (int i = 0; i < place.width * place.height; ++i) {
        picture.insert(picture.end(), {200, 0, 0});
    }
    FormPicture form;
    compose(form, kForm, place, picture.data());
    return form;
}

cv::Mat encoded(const FormPicture& form) {
    return cv::imdecode(PictureEncoder().encode(form), cv::IMREAD_COLOR);
}

bool isRed(const cv::Mat& form, int x, int y) {
    const auto pixel = form.at<cv::Vec3b>(y, x);
    return pixel[2] > 200 - kTolerance && pixel[0] < kTolerance && pixel[1] < kTolerance;
}

bool isSurround(const cv::Mat& form, int x, int y) {
    const auto pixel = form.at<cv::Vec3b>(y, x);
    return std::abs(pixel[0] - kSurround) < kTolerance &&
           std::abs(pixel[2] - kSurround) < kTolerance;
}

} // namespace

TEST(PictureEncoder, FillsTheFormWithAPictureOfEqualSize) {
    const cv::Mat form = encoded(withRed({0, 0, 64, 48}));
    EXPECT_EQ(form.size(), cv::Size(64, 48));
    EXPECT_TRUE(isRed(form, 0, 0));
    EXPECT_TRUE(isRed(form, 63, 47));
}

TEST(PictureEncoder, PutsASmallerPictureAtItsPlace) {
    const cv::Mat form = encoded(withRed({16, 16, 32, 16}));
    EXPECT_EQ(form.size(), cv::Size(64, 48));
    EXPECT_TRUE(isRed(form, 24, 24));
    EXPECT_TRUE(isSurround(form, 4, 4));
    EXPECT_TRUE(isSurround(form, 60, 24));
    EXPECT_TRUE(isSurround(form, 24, 44));
}

TEST(PictureEncoder, ClipsThePictureToTheForm) {
    const cv::Mat form = encoded(withRed({-20, -60, 100, 92}));
    EXPECT_TRUE(isRed(form, 0, 0));
    EXPECT_TRUE(isRed(form, 63, 20));
    EXPECT_TRUE(isSurround(form, 30, 46));
    EXPECT_TRUE(isSurround(encoded(withRed({70, 0, 10, 10})), 63, 4));
    EXPECT_TRUE(isSurround(encoded(withRed({-70, 0, 10, 10})), 0, 4));
}

TEST(PictureEncoder, RefusesAFormWithoutPixels) {
    EXPECT_THROW(PictureEncoder().encode({}), std::runtime_error);
}

TEST(Compose, ErasesTheEarlierPicture) {
    FormPicture form = withRed({0, 0, 64, 48});
    std::vector<unsigned char> black(3, 0);
    compose(form, kForm, {10, 10, 1, 1}, black.data());
    EXPECT_EQ(form.pixels[0], kSurround);
    EXPECT_EQ(form.pixels[3 * (10 * 64 + 10)], 0);
    EXPECT_EQ(form.pixels[3 * (10 * 64 + 11)], kSurround);
}

TEST(Compose, FollowsTheFormsSize) {
    FormPicture form = withRed({0, 0, 64, 48});
    std::vector<unsigned char> black(3, 0);
    compose(form, {8, 4}, {0, 0, 1, 1}, black.data());
    EXPECT_EQ(form.pixels.size(), 8U * 4 * 3);
}

} // namespace doccam::serve
