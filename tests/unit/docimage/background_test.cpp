// Whitening the paper.
#include "cleaning_pictures.h"
#include "support/same_picture.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

namespace {

using namespace doccam::test;

const cv::Rect kStamp(100, 90, 40, 30);
const cv::Point kStampCentre(120, 105);

cv::Mat paperPage() {
    return {kSize, CV_8UC3, kPaper};
}

cv::Mat cleaned(const cv::Mat& page) {
    cv::Mat result = page.clone();
    FN_DeleteBackcolor(result);
    return result;
}

// A wide uniform mark, whose samples sharpening makes half as bright again.
cv::Vec3b cleanedStamp(const cv::Scalar& colour) {
    cv::Mat page = paperPage();
    page(kStamp).setTo(colour);
    return cleaned(page).at<cv::Vec3b>(kStampCentre);
}

TEST(DeleteBackcolor, WhitensGreyPaperAndKeepsBlackPrint) {
    cv::Mat page = paperPage();
    cv::Mat expected(kSize, CV_8UC3, kWhite);
    for (int i = 0; i < 30; ++i) {
        const cv::Rect letter(50 + 6 * i, 70 + i, 3, 9);
        const cv::Scalar ink = cv::Scalar::all(10 + i);
        page(letter).setTo(ink);
        expected(letter).setTo(ink);
    }
    EXPECT_TRUE(isSamePicture(cleaned(page), expected));
}

TEST(DeleteBackcolor, WhitensSlightlyTintedPaper) {
    EXPECT_TRUE(isSamePicture(cleaned(cv::Mat(kSize, CV_8UC3, cv::Scalar(100, 110, 120))),
                              cv::Mat(kSize, CV_8UC3, kWhite)));
}

TEST(DeleteBackcolor, KeepsTheValuesOfGreyPrintRatherThanTheSharpenedOnes) {
    EXPECT_EQ(cleanedStamp({40, 50, 60}), cv::Vec3b(40, 50, 60));
}

TEST(DeleteBackcolor, SharpensColouredMarks) {
    EXPECT_EQ(cleanedStamp({120, 60, 20}), cv::Vec3b(180, 90, 30));
}

TEST(DeleteBackcolor, SharpensAlongTheColumnsOnly) {
    cv::Mat page = paperPage();
    page(cv::Rect(50, 100, 100, 1)).setTo(cv::Scalar(100, 20, 20));
    page(cv::Rect(50, 101, 100, 1)).setTo(cv::Scalar(110, 60, 20));
    page(cv::Rect(50, 102, 100, 1)).setTo(cv::Scalar(80, 30, 30));
    // Five times the pixel, less twice the one above and one and a half times the one below.
    const cv::Vec3b expected(550 - 200 - 120, 300 - 40 - 45, 100 - 40 - 45);
    EXPECT_EQ(cleaned(page).at<cv::Vec3b>(101, 100), expected);
    EXPECT_EQ(cleaned(page).at<cv::Vec3b>(101, 50), expected);
}

TEST(DeleteBackcolor, MakesARedStampRedder) {
    EXPECT_EQ(cleanedStamp({60, 60, 120}), cv::Vec3b(50, 50, 255));
}

TEST(DeleteBackcolor, KeepsARedderStampWithinTheSamplesRange) {
    EXPECT_EQ(cleanedStamp({20, 26, 110}), cv::Vec3b(0, 0, 245));
}

TEST(DeleteBackcolor, TakesALeadOf81OverAnotherChannelForRed) {
    EXPECT_EQ(cleanedStamp({40, 40, 93}), cv::Vec3b(60, 60, 140)); // leads by 80
    EXPECT_EQ(cleanedStamp({40, 40, 94}), cv::Vec3b(20, 20, 221)); // leads both by 81
    EXPECT_EQ(cleanedStamp({40, 90, 94}), cv::Vec3b(20, 95, 221)); // leads blue only
    EXPECT_EQ(cleanedStamp({90, 40, 94}), cv::Vec3b(95, 20, 221)); // leads green only
    EXPECT_EQ(cleanedStamp({94, 40, 40}), cv::Vec3b(141, 60, 60)); // blue is not red
}

// Sharpened, (60, 80, 100) is (90, 120, 150), which is 30 from its mean.
TEST(DeleteBackcolor, CountsADeviationOfThirtyAsGreyAndOfThirtyOneAsColour) {
    EXPECT_EQ(cleanedStamp({60, 80, 100}), cv::Vec3b(60, 80, 100));
    EXPECT_EQ(cleanedStamp({59, 80, 100}), cv::Vec3b(88, 120, 150));
}

TEST(DeleteBackcolor, WhitensLightPaperUpToADeviationOfThirty) {
    const cv::Mat page(kSize, CV_8UC3, cv::Scalar(60, 80, 100));
    EXPECT_EQ(cleaned(page).at<cv::Vec3b>(kStampCentre), cv::Vec3b::all(255));
    const cv::Mat tinted(kSize, CV_8UC3, cv::Scalar(59, 80, 100));
    EXPECT_EQ(cleaned(tinted).at<cv::Vec3b>(kStampCentre), cv::Vec3b(88, 120, 150));
}

class DeleteBackcolorInMargins : public testing::Test {
  protected:
    static constexpr int kRow = 10; // above the sheet

    cv::Mat page_ = sheetOnDesk(kSize, {20, 30, 240, 150}, kPaper);
};

TEST_F(DeleteBackcolorInMargins, WhitensThem) {
    EXPECT_TRUE(isSamePicture(cleaned(page_), cv::Mat(kSize, CV_8UC3, kWhite)));
}

TEST_F(DeleteBackcolorInMargins, WhitensBrightGreySpecks) {
    page_(cv::Rect(100, 190, 10, 10)).setTo(kPaper);
    EXPECT_TRUE(isSamePicture(cleaned(page_), cv::Mat(kSize, CV_8UC3, kWhite)));
}

TEST_F(DeleteBackcolorInMargins, WhitensColouredPixels) {
    page_(cv::Rect(100, kRow, 2, 2)).setTo(cv::Scalar(20, 20, 220));
    EXPECT_TRUE(isSamePicture(cleaned(page_), cv::Mat(kSize, CV_8UC3, kWhite)));
}

TEST_F(DeleteBackcolorInMargins, KeepsAColouredMarkThatEndsThem) {
    page_(cv::Rect(100, kRow - 5, 20, 15)).setTo(cv::Scalar(20, 20, 120));
    EXPECT_EQ(cleaned(page_).at<cv::Vec3b>(kRow, 110), cv::Vec3b(0, 0, 255));
}

TEST(DeleteBackcolor, ThrowsForAnEmptyPicture) {
    EXPECT_THROW(FN_DeleteBackcolor(cv::Mat()), cv::Exception);
}

TEST(DeleteBackcolor, ThrowsForPicturesThatAreNotColour) {
    for (const int type : {CV_8UC1, CV_8UC4, CV_16UC3}) {
        const cv::Mat picture(kSize, type, cv::Scalar::all(9));
        EXPECT_THROW(FN_DeleteBackcolor(picture), cv::Exception);
        EXPECT_TRUE(isSamePicture(picture, cv::Mat(kSize, type, cv::Scalar::all(9))));
    }
}

} // namespace
