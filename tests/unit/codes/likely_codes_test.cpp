#include "codes/corners.h"
#include "codes/passes/likely_codes.h"
#include "unit/barcode/code_pictures.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace doccam::codes {
namespace {

cv::Mat greyPicture(const std::vector<test::Code>& codes, const test::View& view) {
    cv::Mat grey;
    cv::cvtColor(test::photograph(codes, view), grey, cv::COLOR_RGB2GRAY);
    return grey;
}

// In the middle of the picture.
bool isSeen(const cv::Mat& picture, bool bars) {
    const auto found = likelyCodes(picture, {});
    return std::any_of(found.begin(), found.end(), [&](const LikelyCode& likely) {
        return likely.bars == bars && contains(likely.place, {480, 360});
    });
}

TEST(LikelyCodes, AreWhereTheCodesAre) {
    test::View view;
    view.textured = true;
    for (const double angle : {0.0, 31.0, 45.0, 80.0}) {
        view.angle = angle;
        EXPECT_TRUE(isSeen(greyPicture({test::code128("BARS")}, view), true)) << angle;
        EXPECT_TRUE(isSeen(greyPicture({test::qrCode("matrix")}, view), false)) << angle;
    }
}

TEST(LikelyCodes, AreNotSeenInText) {
    test::View view;
    view.textured = true;
    cv::Mat page = greyPicture({test::qrCode("hidden")}, view);
    page(cv::Rect(360, 240, 240, 240)).setTo(235);
    EXPECT_TRUE(likelyCodes(page, {}).empty());
}

TEST(LikelyCodes, AreNotSeenWhereOneHasBeenRead) {
    const cv::Mat picture = greyPicture({test::qrCode("read")}, {});
    const auto before = likelyCodes(picture, {});
    ASSERT_EQ(before.size(), 1U);
    Sighting read;
    read.corners = before[0].place;
    EXPECT_TRUE(likelyCodes(picture, {read}).empty());
}

TEST(LikelyCodes, AreNoneInEmptyPictures) {
    for (const cv::Size size :
         {cv::Size(1, 1), cv::Size(8, 8), cv::Size(9, 500), cv::Size(64, 64)}) {
        EXPECT_TRUE(likelyCodes(cv::Mat(size, CV_8UC1, cv::Scalar(200)), {}).empty());
    }
}

} // namespace
} // namespace doccam::codes
