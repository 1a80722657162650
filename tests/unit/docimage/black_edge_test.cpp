// Whitening the dark margins of pictures in memory, and their mask.
#include "cleaning_pictures.h"
#include "support/same_picture.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>

#include <algorithm>
#include <memory>

namespace {

using namespace doccam::test;

// The outline is three pixels wide: one outside the sheet, two on it.
cv::Rect within(const cv::Rect& sheet) {
    return {sheet.x + 2, sheet.y + 2, sheet.width - 4, sheet.height - 4};
}

cv::Mat withWhiteMargins(const cv::Mat& picture, const cv::Rect& kept) {
    cv::Mat result(picture.size(), picture.type(), kWhite);
    picture(kept).copyTo(result(kept));
    return result;
}

// A sheet with print from black to nearly white, and a coloured mark.
cv::Mat printedSheet() {
    cv::Mat picture = sheetOnDesk(kSize, kSheet, kPaper);
    for (int i = 0; i < 50; ++i) {
        picture(cv::Rect(40 + 4 * i, 60, 3, 20)).setTo(cv::Scalar::all(i * 5));
    }
    picture(cv::Rect(60, 110, 50, 30)).setTo(cv::Scalar(30, 20, 220));
    return picture;
}

struct ReleaseImage {
    void operator()(IplImage* image) const { cvReleaseImage(&image); }
};

std::unique_ptr<IplImage, ReleaseImage> maskOf(const cv::Mat& picture) {
    IplImage header = cvIplImage(picture);
    return std::unique_ptr<IplImage, ReleaseImage>(FillBlackEdgeToWhite(&header));
}

cv::Mat maskPixels(const cv::Mat& picture) {
    return cv::cvarrToMat(maskOf(picture).get(), true);
}

cv::Mat deleted(const cv::Mat& picture) {
    cv::Mat result = picture.clone();
    FN_DeleteBlackEdge(result);
    return result;
}

TEST(DeleteBlackEdge, WhitensAllOfADarkPicture) {
    const cv::Mat picture(kSize, CV_8UC3, kBlackDesk);
    EXPECT_TRUE(isSamePicture(deleted(picture), cv::Mat(kSize, CV_8UC3, kWhite)));
}

TEST(DeleteBlackEdge, WhitensAllOfAPictureWhoseSheetIsTooSmall) {
    const cv::Mat picture = sheetOnDesk(kSize, {20, 30, 201, 151}, kPaper);
    EXPECT_TRUE(isSamePicture(deleted(picture), cv::Mat(kSize, CV_8UC3, kWhite)));
}

TEST(DeleteBlackEdge, WhitensTheMarginsAndKeepsTheSheetsContent) {
    const cv::Mat picture = printedSheet();
    EXPECT_TRUE(isSamePicture(deleted(picture), withWhiteMargins(picture, within(kSheet))));
}

TEST(DeleteBlackEdge, KeepsADimSheetOnANearlyBlackDesk) {
    cv::Mat picture(kSize, CV_8UC3, cv::Scalar::all(30));
    picture(kSheet).setTo(cv::Scalar::all(31));
    EXPECT_TRUE(isSamePicture(deleted(picture), withWhiteMargins(picture, within(kSheet))));
}

TEST(DeleteBlackEdge, JudgesDarknessByTheMeanRoundedDown) {
    cv::Mat picture(kSize, CV_8UC3, cv::Scalar(0, 0, 92));
    picture(kSheet).setTo(cv::Scalar(0, 0, 93));
    EXPECT_TRUE(isSamePicture(deleted(picture), withWhiteMargins(picture, within(kSheet))));
}

TEST(DeleteBlackEdge, PaintsAThreePixelBorderOnASheetThatFillsThePicture) {
    const cv::Mat picture(kSize, CV_8UC3, kPaper);
    EXPECT_TRUE(isSamePicture(deleted(picture), withWhiteMargins(picture, {3, 3, 294, 214})));
}

TEST(DeleteBlackEdge, PaintsABrightSpeckBelowTheSheet) {
    cv::Mat picture = printedSheet();
    picture(cv::Rect(100, 190, 20, 20)).setTo(kPaper);
    EXPECT_TRUE(isSamePicture(deleted(picture), withWhiteMargins(picture, within(kSheet))));
}

TEST(DeleteBlackEdge, KeepsABrightSpeckAboveTheSheet) {
    cv::Mat picture = printedSheet();
    const cv::Rect speck(100, 5, 20, 20);
    picture(speck).setTo(kPaper);
    cv::Mat expected = withWhiteMargins(picture, within(kSheet));
    // From below, its columns end at the sheet; their margin above ends at the speck.
    picture(within(speck)).copyTo(expected(within(speck)));
    const cv::Mat actual = deleted(picture);
    EXPECT_TRUE(isSamePicture(actual(within(speck)), expected(within(speck))));
    EXPECT_TRUE(isSamePicture(actual(within(kSheet)), expected(within(kSheet))));
    EXPECT_EQ(actual.at<cv::Vec3b>(15, 90), cv::Vec3b::all(255));
}

TEST(DeleteBlackEdge, SkewsWithTheRowPaddingWhenTheWidthIsNoMultipleOfFour) {
    const cv::Rect sheet(40, 4, 256, 140);
    const cv::Mat picture = sheetOnDesk({303, 148}, sheet, kPaper);
    const cv::Mat actual = deleted(picture);
    // Row 100 finds its own left edge a hundred pixels too far right, and the previous row's right
    // edge on the left.
    const cv::Mat row = actual.row(100);
    EXPECT_EQ(row.at<cv::Vec3b>(92), cv::Vec3b::all(255));
    EXPECT_EQ(row.at<cv::Vec3b>(93), cv::Vec3b::all(200));
    EXPECT_EQ(row.at<cv::Vec3b>(130), cv::Vec3b::all(200));
    EXPECT_EQ(row.at<cv::Vec3b>(139), cv::Vec3b::all(255));
    EXPECT_EQ(row.at<cv::Vec3b>(200), cv::Vec3b::all(255));
}

TEST(DeleteBlackEdge, LeavesTheSurroundingsOfAViewAlone) {
    cv::Mat whole(kSize.height + 20, kSize.width + 14, CV_8UC3, cv::Scalar(1, 2, 3));
    const cv::Mat expected = whole.clone();
    const cv::Rect area(7, 10, kSize.width, kSize.height);
    const cv::Mat picture = printedSheet();
    picture.copyTo(whole(area));
    deleted(picture).copyTo(expected(area));
    FN_DeleteBlackEdge(whole(area));
    EXPECT_TRUE(isSamePicture(whole, expected));
}

TEST(DeleteBlackEdge, ThrowsForAnEmptyPicture) {
    EXPECT_THROW(FN_DeleteBlackEdge(cv::Mat()), cv::Exception);
}

TEST(DeleteBlackEdge, ThrowsForPicturesThatAreNotColour) {
    for (const int type : {CV_8UC1, CV_8UC4, CV_16UC3}) {
        const cv::Mat picture(kSize, type, cv::Scalar::all(9));
        EXPECT_THROW(FN_DeleteBlackEdge(picture), cv::Exception);
        EXPECT_TRUE(isSamePicture(picture, cv::Mat(kSize, type, cv::Scalar::all(9))));
    }
}

TEST(FillBlackEdgeToWhite, IsWhiteInTheMarginsOnly) {
    cv::Mat expected(kSize, CV_8UC1, kWhite);
    expected(within(kSheet)).setTo(0);
    EXPECT_TRUE(isSamePicture(maskPixels(printedSheet()), expected));
}

TEST(FillBlackEdgeToWhite, IsAllWhiteForADarkPicture) {
    EXPECT_TRUE(isSamePicture(maskPixels(cv::Mat(kSize, CV_8UC3, kBlackDesk)),
                              cv::Mat(kSize, CV_8UC1, kWhite)));
}

TEST(FillBlackEdgeToWhite, LeavesItsInputAlone) {
    const cv::Mat picture = printedSheet();
    maskOf(picture);
    EXPECT_TRUE(isSamePicture(picture, printedSheet()));
}

TEST(FillBlackEdgeToWhite, HasOneChannelAndBlackPadding) {
    const auto mask = maskOf(cv::Mat(20, 13, CV_8UC3, kBlackDesk));
    EXPECT_EQ(mask->nChannels, 1);
    EXPECT_EQ(mask->depth, IPL_DEPTH_8U);
    EXPECT_EQ(mask->width, 13);
    EXPECT_EQ(mask->height, 20);
    EXPECT_EQ(mask->widthStep, 16);
    for (int y = 0; y < mask->height; ++y) {
        const char* const row = mask->imageData + y * mask->widthStep;
        EXPECT_TRUE(std::all_of(row, row + 13, [](char byte) { return byte == '\xff'; })) << y;
        EXPECT_TRUE(std::all_of(row + 13, row + 16, [](char byte) { return byte == 0; })) << y;
    }
}

// Whether a patch of one colour, too small for a sheet, ends the margins around it.
bool endsMargins(const cv::Scalar& colour) {
    const cv::Rect patch(140, 100, 20, 20);
    const cv::Rect inner(143, 103, 14, 14);
    const cv::Mat mask = maskPixels(sheetOnDesk(kSize, patch, colour));
    const int kept = inner.area() - cv::countNonZero(mask(inner));
    EXPECT_TRUE(kept == 0 || kept == inner.area()) << kept;
    EXPECT_EQ(cv::countNonZero(mask), kSize.area() - kept);
    return kept != 0;
}

TEST(FillBlackEdgeToWhite, EndsMarginsAtColouredPixels) {
    EXPECT_FALSE(endsMargins({90, 120, 150})); // 30 off the mean
    EXPECT_TRUE(endsMargins({89, 120, 150}));  // the last 31 above the mean
    EXPECT_TRUE(endsMargins({120, 90, 151}));
    EXPECT_TRUE(endsMargins({150, 120, 88})); // the last 31 below the mean
    EXPECT_TRUE(endsMargins({0, 0, 46}));     // 31 above a dark mean
    EXPECT_FALSE(endsMargins({0, 0, 44}));
}

TEST(FillBlackEdgeToWhite, ThrowsForNoImage) {
    EXPECT_THROW(FillBlackEdgeToWhite(nullptr), cv::Exception);
}

} // namespace
