// Pages by recipes.
#include "pages/rendering.h"
#include "pages/sheets.h"

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace {

using namespace doccam::host;

const cv::Rect kSheet(300, 180, 560, 400);
const cv::Rect kMark(340, 220, 120, 60); // red, near the sheet's top left corner

cv::Mat frame() {
    cv::Mat picture(800, 1200, CV_8UC3, cv::Scalar(60, 66, 72));
    cv::rectangle(picture, kSheet, cv::Scalar(225, 230, 232), cv::FILLED);
    cv::rectangle(picture, kMark, cv::Scalar(40, 40, 200), cv::FILLED);
    cv::GaussianBlur(picture, picture, {}, 0.7);
    return picture;
}

Recipe ofTheSheet() {
    const auto found = findSheets(frame(), 3);
    EXPECT_EQ(found.size(), 1U);
    Recipe recipe;
    recipe.corners = found.at(0).corners;
    recipe.look = Look::kPhoto;
    return recipe;
}

cv::Mat rendered(const Recipe& recipe) {
    const Page page = renderPage(frame(), recipe);
    return cv::imdecode(encodePage("page.png", *page, recipe.quality), cv::IMREAD_UNCHANGED);
}

bool isRed(const cv::Mat& page, cv::Point place) {
    const auto pixel = page.at<cv::Vec3b>(place);
    return pixel[2] > 150 && pixel[0] < 90;
}

TEST(Rendering, OfASheetIsTheSheet) {
    const cv::Mat page = rendered(ofTheSheet());
    EXPECT_NEAR(page.cols, kSheet.width, 2);
    EXPECT_NEAR(page.rows, kSheet.height, 2);
    EXPECT_TRUE(isRed(page, {100, 70}));
}

TEST(Rendering, TurnsThePageClockwise) {
    Recipe recipe = ofTheSheet();
    const cv::Mat upright = rendered(recipe);
    for (const auto& [turn, rotation] :
         {std::pair(1, cv::ROTATE_90_CLOCKWISE), std::pair(2, cv::ROTATE_180),
          std::pair(3, cv::ROTATE_90_COUNTERCLOCKWISE)}) {
        recipe.turn = turn;
        cv::Mat turned;
        cv::rotate(upright, turned, rotation);
        const cv::Mat page = rendered(recipe);
        ASSERT_EQ(page.size(), turned.size()) << turn;
        EXPECT_EQ(cv::norm(page, turned, cv::NORM_INF), 0) << turn;
    }
}

TEST(Rendering, WithoutCornersIsTheWholeFrame) {
    Recipe recipe;
    recipe.look = Look::kPhoto;
    EXPECT_EQ(cv::norm(rendered(recipe), frame(), cv::NORM_INF), 0);
}

TEST(Rendering, GivesEachColourItsChannels) {
    Recipe recipe = ofTheSheet();
    for (const Look look : {Look::kPhoto, Look::kPaper}) {
        recipe.look = look;
        recipe.colour = Colour::kColour;
        EXPECT_EQ(rendered(recipe).channels(), 3);
        recipe.colour = Colour::kGrey;
        EXPECT_EQ(rendered(recipe).channels(), 1);
        recipe.colour = Colour::kBlackAndWhite;
        EXPECT_EQ(renderPage(frame(), recipe)->pixels, DOCCAM_PIXELS_BITS);
        const cv::Mat bits = rendered(recipe);
        EXPECT_EQ(bits.at<uchar>(300, 300), 255);
    }
}

TEST(Rendering, OfAPaleSheetInTheLookOfPaperIsWhite) {
    Recipe recipe = ofTheSheet();
    recipe.look = Look::kPaper;
    const cv::Mat page = rendered(recipe);
    EXPECT_GT(page.at<cv::Vec3b>(300, 300)[0], 250);
    EXPECT_TRUE(isRed(page, {100, 70}));
}

TEST(Rendering, IsEncodedAsTheNameSaysWithTheQuality) {
    Recipe recipe = ofTheSheet();
    const Page page = renderPage(frame(), recipe);
    const auto fine = encodePage("page.jpg", *page, 95);
    const auto coarse = encodePage("page.jpg", *page, 20);
    EXPECT_EQ(fine[0], 0xFF);
    EXPECT_LT(coarse.size(), fine.size());
    EXPECT_EQ(encodePage("page.png", *page, 95)[1], 'P');
}

TEST(Sheets, AreNotFoundOnAnEmptyDesk) {
    EXPECT_TRUE(findSheets(cv::Mat(800, 1200, CV_8UC3, cv::Scalar(60, 66, 72)), 5).empty());
}

} // namespace
