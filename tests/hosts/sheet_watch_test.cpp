#include "scan/sheet_watch.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace {

using doccam::host::changedShare;
using doccam::host::SheetWatch;

constexpr int kCalm = SheetWatch::kCalmFrames;

const cv::Size kPicture(320, 240);
const cv::Mat kDesk(kPicture, CV_8UC1, cv::Scalar(40));

// A white sheet with bars as lines of text, starting at a different height on each page.
cv::Mat sheet(int page, int left = 90) {
    cv::Mat picture = kDesk.clone();
    cv::rectangle(picture, cv::Rect(left, 30, 140, 180), cv::Scalar(240), -1);
    for (int y = 40 + 3 * page; y < 200; y += 12) {
        cv::rectangle(picture, cv::Rect(left + 10, y, 120 - 10 * page, 5), cv::Scalar(60), -1);
    }
    return picture;
}

cv::Mat noisy(const cv::Mat& picture, int seed) {
    cv::RNG random(static_cast<std::uint64_t>(seed) + 1);
    cv::Mat noise(picture.size(), CV_16SC1);
    random.fill(noise, cv::RNG::NORMAL, 0, 2);
    cv::Mat result;
    cv::add(picture, noise, result, cv::noArray(), CV_8U);
    return result;
}

// Shows the picture that many times; returns whether any of the frames gave a new page.
bool show(SheetWatch& watch, const cv::Mat& picture, int times) {
    bool seen = false;
    for (int i = 0; i < times; ++i) {
        seen = watch.seesNewPage(noisy(picture, i)) || seen;
    }
    return seen;
}

TEST(SheetWatch, SeesASheetOnceItLiesStill) {
    SheetWatch watch;
    EXPECT_FALSE(show(watch, sheet(1), kCalm));
    EXPECT_TRUE(show(watch, sheet(1), 1));
}

TEST(SheetWatch, SeesNothingNewInTheSheetItHasTaken) {
    SheetWatch watch;
    show(watch, sheet(1), kCalm + 1);
    watch.noteTaken();
    EXPECT_FALSE(show(watch, sheet(1), 5 * kCalm));
}

TEST(SheetWatch, SeesTheNextPageThatLiesInTheSamePlace) {
    SheetWatch watch;
    show(watch, sheet(1), kCalm + 1);
    watch.noteTaken();
    EXPECT_TRUE(show(watch, sheet(2), kCalm + 1));
}

TEST(SheetWatch, SeesNothingNewWhenTheSameSheetIsPutBack) {
    SheetWatch watch;
    show(watch, sheet(1), kCalm + 1);
    watch.noteTaken();
    show(watch, kDesk, kCalm + 1);
    watch.noteDismissed();
    EXPECT_FALSE(show(watch, sheet(1), 2 * kCalm));
}

TEST(SheetWatch, WaitsWhileTheSheetMoves) {
    SheetWatch watch;
    bool seen = false;
    for (int left = 20; left < 160; ++left) {
        seen = show(watch, sheet(1, left), kCalm / 2) || seen;
    }
    EXPECT_FALSE(seen);
}

TEST(SheetWatch, WaitsWhileTheSheetCreeps) {
    SheetWatch watch;
    bool seen = false;
    for (int step = 0; step < 40; ++step) {
        seen = show(watch, sheet(1, 40 + step), 4) || seen;
    }
    EXPECT_FALSE(seen);
}

TEST(SheetWatch, StartsAgainAfterAHandPassedThrough) {
    SheetWatch watch;
    show(watch, sheet(1), kCalm - 1);
    cv::Mat hand = sheet(1);
    cv::circle(hand, {160, 220}, 30, cv::Scalar(150), -1);
    show(watch, hand, 1);
    EXPECT_FALSE(show(watch, sheet(1), kCalm));
    EXPECT_TRUE(show(watch, sheet(1), 1));
}

TEST(SheetWatch, IgnoresADismissedPictureUntilAnotherComes) {
    SheetWatch watch;
    show(watch, kDesk, kCalm + 1);
    watch.noteDismissed();
    EXPECT_FALSE(show(watch, kDesk, 3 * kCalm));
    EXPECT_TRUE(show(watch, sheet(1), kCalm + 1));
}

TEST(SheetWatch, ReportsWhetherThePictureAtRestHasMoved) {
    SheetWatch watch;
    show(watch, sheet(1), kCalm + 1);
    EXPECT_TRUE(watch.isUnmoved(noisy(sheet(1), 99)));
    EXPECT_FALSE(watch.isUnmoved(sheet(1, 95)));
}

TEST(ChangedShare, IgnoresOverallBrightness) {
    EXPECT_EQ(changedShare(sheet(1), sheet(1) - 30), 0.0);
}

TEST(ChangedShare, CountsThePixelsThatDiffer) {
    cv::Mat marked = kDesk.clone();
    marked(cv::Rect(0, 0, 32, 24)).setTo(200);
    EXPECT_NEAR(changedShare(kDesk, marked), 0.01, 1e-9);
}

TEST(ChangedShare, IsWholeForPicturesOfDifferentSizes) {
    EXPECT_EQ(changedShare(kDesk, cv::Mat(10, 10, CV_8UC1, cv::Scalar(40))), 1.0);
}

TEST(ShowsSomething, DistinguishesASheetFromAnEmptyDesk) {
    EXPECT_TRUE(doccam::host::showsSomething(sheet(1)));
    EXPECT_FALSE(doccam::host::showsSomething(noisy(kDesk, 1)));
}

TEST(ReducedGrey, KeepsTheShapeAndWeighsRedFirst) {
    const cv::Mat red(600, 800, CV_8UC3, cv::Scalar(255, 0, 0));
    const cv::Mat grey = doccam::host::reducedGrey(red);
    EXPECT_EQ(grey.size(), cv::Size(320, 240));
    EXPECT_EQ(grey.type(), CV_8UC1);
    EXPECT_EQ(grey.at<std::uint8_t>(0, 0), 76);
}

} // namespace
