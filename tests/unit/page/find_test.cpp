// Sheets found in drawn pictures, and found again.
#include "drawn_sheets.h"
#include "page/find.h"
#include "page/quadrilateral.h"

#include <gmock/gmock.h>
#include <opencv2/imgproc.hpp>

namespace doccam::test {
namespace {

using page::Corners;
using page::findSheetAgain;
using page::findSheets;
using page::Sheet;
using testing::IsEmpty;
using testing::SizeIs;

const Camera kTilted{.tilt = 18, .pan = -9, .turn = 12, .distance = 1.9};
const cv::Scalar kPaper(238, 240, 242);

void expectNear(const Corners& found, const Corners& truth, double pixels) {
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_LT(cv::norm(found[i] - truth[i]), pixels) << found[i] << truth[i];
    }
}

class FindSheets : public testing::TestWithParam<cv::Scalar> {};

TEST_P(FindSheets, FindsASheetInPerspectiveToAFractionOfAPixel) {
    const Corners truth = seenCorners(kTilted, 0.707);
    cv::Mat picture = drawnSheet(kTilted.picture, truth, kPaper, GetParam());
    addNoise(picture, 2);
    const auto sheets = findSheets(picture, 4);
    ASSERT_THAT(sheets, SizeIs(1));
    expectNear(sheets[0].corners, truth, 0.7);
    EXPECT_FALSE(sheets[0].cut);
    EXPECT_GT(sheets[0].confidence, 0.7);
}

INSTANTIATE_TEST_SUITE_P(Desks, FindSheets,
                         testing::Values(cv::Scalar(30, 30, 30), cv::Scalar(60, 100, 150),
                                         cv::Scalar(128, 128, 128), cv::Scalar(228, 230, 233),
                                         cv::Scalar(200, 240, 242)));

TEST(FindSheets, FindsNothingOnAnEmptyDesk) {
    for (const double grey : {0.0, 90.0, 235.0, 255.0}) {
        cv::Mat desk(900, 1200, CV_8UC3, cv::Scalar::all(grey));
        EXPECT_THAT(findSheets(desk, 4), IsEmpty());
        addNoise(desk, 3);
        EXPECT_THAT(findSheets(desk, 4), IsEmpty());
    }
}

TEST(FindSheets, FindsNothingInStripes) {
    cv::Mat stripes(900, 1200, CV_8UC3, cv::Scalar(80, 120, 160));
    for (int x = 0; x < stripes.cols; x += 100) {
        stripes.colRange(x, x + 50).setTo(cv::Scalar(180, 190, 200));
    }
    EXPECT_THAT(findSheets(stripes, 4), IsEmpty());
}

TEST(FindSheets, FindsSeveralAndNoMoreThanWanted) {
    cv::Mat picture(900, 1200, CV_8UC3, cv::Scalar(40, 60, 70));
    for (const int x : {80, 460, 840}) {
        cv::rectangle(picture, cv::Rect(x, 200, 280, 400), kPaper, cv::FILLED);
    }
    EXPECT_THAT(findSheets(picture, 8), SizeIs(3));
    EXPECT_THAT(findSheets(picture, 2), SizeIs(2));
}

TEST(FindSheets, IsNotDisturbedByAFingerAndAFoldedCorner) {
    const Corners truth = seenCorners({.turn = 4, .distance = 1.8}, 0.707);
    cv::Mat picture = drawnSheet({1200, 900}, truth, kPaper, {50, 70, 90});
    cv::ellipse(picture, truth[0] * 0.5 + truth[3] * 0.5, {90, 35}, 5, 0, 360, {110, 140, 200},
                cv::FILLED, cv::LINE_AA);
    const cv::Point2d fold[] = {truth[2], truth[2] + (truth[1] - truth[2]) * 0.1,
                                truth[2] + (truth[3] - truth[2]) * 0.12};
    cv::fillConvexPoly(picture, std::vector<cv::Point>(std::begin(fold), std::end(fold)),
                       {50, 70, 90}, cv::LINE_AA);
    const auto sheets = findSheets(picture, 1);
    ASSERT_THAT(sheets, SizeIs(1));
    expectNear(sheets[0].corners, truth, 2);
}

TEST(FindSheets, FindsTheSheetAroundADarkBox) {
    const Corners truth = seenCorners(kTilted, 0.707);
    cv::Mat picture = drawnSheet(kTilted.picture, truth, kPaper, {120, 140, 150});
    std::vector<cv::Point> box;
    for (const cv::Point2d corner : truth) {
        box.emplace_back(corner + (page::middleOf(truth) - corner) * 0.25);
    }
    cv::fillConvexPoly(picture, box, {70, 40, 30}, cv::LINE_AA);
    const auto sheets = findSheets(picture, 1);
    ASSERT_THAT(sheets, SizeIs(1));
    expectNear(sheets[0].corners, truth, 1);
}

TEST(FindSheets, FindsTheWholeOfASheetOfTwoColours) {
    const Corners truth{{{150, 240}, {1050, 270}, {1040, 690}, {160, 700}}};
    cv::Mat picture = drawnSheet({1200, 900}, truth, {190, 205, 200}, {150, 150, 148});
    const cv::Point2d top = truth[0] + (truth[1] - truth[0]) * 0.25;
    const cv::Point2d bottom = truth[3] + (truth[2] - truth[3]) * 0.25;
    cv::fillConvexPoly(picture, std::vector<cv::Point>{truth[0], top, bottom, truth[3]}, kPaper,
                       cv::LINE_AA);
    const auto sheets = findSheets(picture, 4);
    ASSERT_THAT(sheets, SizeIs(1));
    expectNear(sheets[0].corners, truth, 1.5);
}

TEST(FindSheets, FindsSheetsSideBySide) {
    cv::Mat picture(900, 1200, CV_8UC3, cv::Scalar(60, 90, 120));
    cv::rectangle(picture, cv::Rect(150, 200, 380, 540), kPaper, cv::FILLED);
    cv::rectangle(picture, cv::Rect(570, 202, 380, 540), kPaper, cv::FILLED);
    addNoise(picture, 2);
    EXPECT_THAT(findSheets(picture, 8), SizeIs(2));
}

TEST(FindSheets, FindsADarkSheetOnALightDesk) {
    const Corners truth = seenCorners(kTilted, 0.707);
    cv::Mat picture = drawnSheet(kTilted.picture, truth, {60, 50, 45}, {190, 200, 205});
    addNoise(picture, 2);
    const auto sheets = findSheets(picture, 2);
    ASSERT_THAT(sheets, SizeIs(1));
    expectNear(sheets[0].corners, truth, 0.7);
}

// Woven of threads of two colours, so that it has squares of three.
cv::Mat chequeredCloth(const cv::Vec3b& one, const cv::Vec3b& other) {
    cv::Mat cloth(900, 1200, CV_8UC3);
    cv::RNG random(7);
    for (int y = 0; y < cloth.rows; ++y) {
        for (int x = 0; x < cloth.cols; ++x) {
            const int ofOther = x / 90 % 2 + y / 90 % 2;
            const int grain = random.uniform(-12, 13);
            for (int c = 0; c < 3; ++c) {
                cloth.at<cv::Vec3b>(y, x)[c] = cv::saturate_cast<unsigned char>(
                    (one[c] * (2 - ofOther) + other[c] * ofOther) / 2 + grain);
            }
        }
    }
    cv::blur(cloth, cloth, {3, 3});
    return cloth;
}

TEST(FindSheets, FindsNothingOnAChequeredCloth) {
    EXPECT_THAT(findSheets(chequeredCloth({90, 60, 90}, {210, 180, 90}), 4), IsEmpty());
}

TEST(FindSheets, FindsASheetOnAClothWithSquaresOfItsOwnColour) {
    const Corners truth = seenCorners(kTilted, 0.707);
    cv::Mat picture = chequeredCloth({40, 30, 150}, {224, 226, 226});
    const cv::Mat sheet = drawnSheet(picture.size(), truth, {226, 228, 228}, {0, 0, 0});
    sheet.copyTo(picture, sheet);
    addNoise(picture, 1);
    const auto sheets = findSheets(picture, 2);
    ASSERT_THAT(sheets, SizeIs(1));
    expectNear(sheets[0].corners, truth, 1.5);
}

TEST(FindSheets, MarksASheetWhoseSideLiesOutsideAsCut) {
    Corners truth = seenCorners({.distance = 1.6}, 0.707);
    cv::Mat picture = drawnSheet({1200, 900}, truth, kPaper, {50, 70, 90});
    const auto sheets = findSheets(picture(cv::Rect(0, 0, 1200, 600)), 1);
    ASSERT_THAT(sheets, SizeIs(1));
    EXPECT_TRUE(sheets[0].cut);
}

TEST(FindSheets, FindsASheetOneCornerOfWhichLiesOutside) {
    const Corners truth = seenCorners({.turn = 8, .distance = 1.6}, 0.707);
    const cv::Mat picture = drawnSheet({1200, 900}, truth, kPaper, {50, 70, 90});
    const auto seen =
        cv::Rect(cv::Point(0, 0), cv::Point(cvFloor(truth[2].x) - 120, cvFloor(truth[2].y) - 80));
    cv::Mat cut = picture(seen).clone();
    addNoise(cut, 2);
    const auto sheets = findSheets(cut, 1);
    ASSERT_THAT(sheets, SizeIs(1));
    EXPECT_TRUE(sheets[0].cut);
    EXPECT_LT(cv::norm(sheets[0].corners[0] - truth[0]), 1);
}

TEST(FindSheets, TakesPicturesOfAnySize) {
    for (const cv::Size size : {cv::Size(1, 1), cv::Size(1, 4000), cv::Size(31, 31),
                                cv::Size(33, 40), cv::Size(40, 3000), cv::Size(32767, 33)}) {
        findSheets(cv::Mat(size, CV_8UC3, cv::Scalar::all(9)), 2);
        findSheets(cv::Mat(size, CV_8UC1, cv::Scalar::all(9)), 2);
        findSheetAgain(cv::Mat(size, CV_8UC3, cv::Scalar::all(9)),
                       {Corners{{{1, 1}, {20, 1}, {20, 20}, {1, 20}}}});
    }
}

TEST(FindSheetAgain, FollowsASheetThatHasMovedALittle) {
    const Corners before = seenCorners(kTilted, 0.707);
    Corners after = before;
    for (cv::Point2d& corner : after) {
        corner += cv::Point2d(7, -5);
    }
    const cv::Mat picture = drawnSheet(kTilted.picture, after, kPaper, {50, 70, 90});
    const auto sheets = findSheetAgain(picture, {before, 0.9, false});
    ASSERT_THAT(sheets, SizeIs(1));
    expectNear(sheets[0].corners, after, 0.7);
}

TEST(FindSheetAgain, FindsNothingWhereTheSheetIsGone) {
    for (const double noise : {0, 2, 5, 8}) {
        cv::Mat desk(900, 1200, CV_8UC3, cv::Scalar(50, 70, 90));
        addNoise(desk, noise);
        EXPECT_THAT(findSheetAgain(desk, {seenCorners(kTilted, 0.707), 0.9, false}), IsEmpty());
    }
}

TEST(FindSheetAgain, DoesNotTakeThePictureForTheSheet) {
    const cv::Mat desk(900, 1200, CV_8UC3, cv::Scalar(50, 70, 90));
    const Corners borders{{{-0.5, -0.5}, {1199.5, -0.5}, {1199.5, 899.5}, {-0.5, 899.5}}};
    EXPECT_THAT(findSheetAgain(desk, {borders, 0.9, false}), IsEmpty());
}

TEST(FindSheetAgain, FindsNothingFarFromThePicture) {
    const cv::Mat desk(900, 1200, CV_8UC3, cv::Scalar(50, 70, 90));
    for (const double far : {3e3, 6e4, 1e9}) {
        EXPECT_THAT(findSheetAgain(desk, {{{{-far, -far}, {far, -far}, {far, far}, {-far, far}}}}),
                    IsEmpty());
    }
}

} // namespace
} // namespace doccam::test
