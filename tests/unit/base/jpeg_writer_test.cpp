// JPEG files, byte for byte equal to OpenCV's.
#include "base/pictures/jpeg_writer.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <vector>

namespace {

using doccam::jpegOf;
using Bytes = std::vector<unsigned char>;

cv::Mat noise(cv::Size size, int type) {
    cv::Mat picture(size, type);
    cv::RNG random(static_cast<unsigned>(size.area()));
    random.fill(picture, cv::RNG::UNIFORM, 0, 256);
    return picture;
}

Bytes plainJpeg(const cv::Mat& picture, int quality) {
    Bytes file;
    cv::imencode(".jpg", picture, file, {cv::IMWRITE_JPEG_QUALITY, quality});
    return file;
}

class Jpeg : public testing::TestWithParam<int> {};

TEST_P(Jpeg, EqualsOpenCvsForSmallSizes) {
    for (int width = 1; width <= 35; width += 2) {
        for (int height = 1; height <= 35; height += 3) {
            const cv::Mat picture = noise({width, height}, GetParam());
            EXPECT_EQ(jpegOf(picture, 85), plainJpeg(picture, 85)) << picture.size();
        }
    }
}

TEST_P(Jpeg, EqualsOpenCvsForEveryQualityAndBeyond) {
    const cv::Mat picture = noise({70, 50}, GetParam());
    for (int quality = -2; quality <= 103; ++quality) {
        EXPECT_EQ(jpegOf(picture, quality), plainJpeg(picture, quality)) << quality;
    }
}

TEST_P(Jpeg, EqualsOpenCvsForFilesOfMegabytes) {
    const cv::Mat picture = noise({1400, 1100}, GetParam());
    EXPECT_GT(plainJpeg(picture, 100).size(), 1'000'000U);
    EXPECT_EQ(jpegOf(picture, 100), plainJpeg(picture, 100));
}

TEST_P(Jpeg, EqualsOpenCvsForPartOfAPicture) {
    const cv::Mat part = noise({90, 70}, GetParam())(cv::Rect(11, 7, 43, 50));
    EXPECT_EQ(jpegOf(part, 85), plainJpeg(part, 85));
}

TEST_P(Jpeg, CodedSmallestHasTheSamePixelsInFewerBytes) {
    cv::Mat picture(300, 500, GetParam(), cv::Scalar::all(255));
    cv::circle(picture, {200, 150}, 90, cv::Scalar(40, 90, 200, 0), cv::FILLED);
    const auto smallest = jpegOf(picture, 70, doccam::JpegCoding::kSmallest);
    const Bytes usual = plainJpeg(picture, 70);
    ASSERT_TRUE(smallest);
    EXPECT_LT(smallest->size(), usual.size());
    EXPECT_EQ(cv::norm(cv::imdecode(*smallest, cv::IMREAD_UNCHANGED),
                       cv::imdecode(usual, cv::IMREAD_UNCHANGED), cv::NORM_INF),
              0);
}

TEST_P(Jpeg, IsNotMadeOfAPictureThatIsTooWide) {
    EXPECT_EQ(jpegOf(noise({70000, 1}, GetParam()), 85), std::nullopt);
    EXPECT_EQ(jpegOf(cv::Mat(0, 0, GetParam()), 85), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Types, Jpeg, testing::Values(CV_8UC1, CV_8UC3, CV_8UC4),
                         [](const auto& type) {
                             return std::to_string(CV_MAT_CN(type.param)) + "Channels";
                         });

TEST(JpegOfOtherKinds, IsNotMade) {
    for (const int type : {CV_8UC2, CV_16UC3, CV_32FC1}) {
        EXPECT_EQ(jpegOf(cv::Mat(20, 20, type, cv::Scalar::all(7)), 85), std::nullopt) << type;
    }
}

} // namespace
