// The form as a JPEG.
#include "serve/picture_encoder.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

namespace doccam::serve {
namespace {

constexpr int kTolerance = 4;

PreviewPicture redPicture(int width, int height, int startX, int startY) {
    PreviewPicture picture;
    for (int i = 0; i < width * height; ++i) {
        picture.pixels.insert(picture.pixels.end(), {200, 0, 0});
    }
    picture.width = width;
    picture.height = height;
    picture.startX = startX;
    picture.startY = startY;
    picture.formWidth = 64;
    picture.formHeight = 48;
    return picture;
}

cv::Mat encoded(const PreviewPicture& picture) {
    return cv::imdecode(PictureEncoder().encode(picture), cv::IMREAD_COLOR);
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

TEST(PictureEncoder, FillsTheFormWithAPictureOfItsSize) {
    const cv::Mat form = encoded(redPicture(64, 48, 0, 0));
    EXPECT_EQ(form.size(), cv::Size(64, 48));
    EXPECT_TRUE(isRed(form, 0, 0));
    EXPECT_TRUE(isRed(form, 63, 47));
}

TEST(PictureEncoder, PutsASmallerPictureAtItsPlace) {
    const cv::Mat form = encoded(redPicture(32, 16, 16, 16));
    EXPECT_EQ(form.size(), cv::Size(64, 48));
    EXPECT_TRUE(isRed(form, 24, 24));
    EXPECT_TRUE(isSurround(form, 4, 4));
    EXPECT_TRUE(isSurround(form, 60, 24));
    EXPECT_TRUE(isSurround(form, 24, 44));
}

TEST(PictureEncoder, CutsOffWhatLiesOutsideTheForm) {
    const cv::Mat form = encoded(redPicture(100, 92, -20, -60));
    EXPECT_TRUE(isRed(form, 0, 0));
    EXPECT_TRUE(isRed(form, 63, 20));
    EXPECT_TRUE(isSurround(form, 30, 46));
    EXPECT_TRUE(isSurround(encoded(redPicture(10, 10, 70, 0)), 63, 4));
    EXPECT_TRUE(isSurround(encoded(redPicture(10, 10, -70, 0)), 0, 4));
}

TEST(PictureEncoder, RefusesAFormWithoutPixels) {
    PreviewPicture picture = redPicture(4, 4, 0, 0);
    picture.formWidth = 0;
    EXPECT_THROW(PictureEncoder().encode(picture), std::runtime_error);
}

} // namespace doccam::serve
