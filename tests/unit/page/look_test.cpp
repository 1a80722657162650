// What a page looks like once its light is even, and in black and white.
#include "page/look.h"
#include "page/paper/tone_kernels.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace doccam::page {
namespace {

const cv::Scalar kWhite = cv::Scalar::all(255);
const cv::Scalar kBlack = cv::Scalar::all(0);

// Blank print with lines of text.
cv::Mat printedPage(int type = CV_8UC3, cv::Size size = {900, 1200}) {
    cv::Mat page(size, type, kWhite);
    for (int y = 120; y < size.height - 80; y += 60) {
        cv::putText(page, "The quick brown fox jumps over it", {80, y}, cv::FONT_HERSHEY_SIMPLEX,
                    1.0, kBlack, 2, cv::LINE_AA);
    }
    return page;
}

using Light = std::vector<double>;

// The page under a light that falls off from left to right by three, in a colour, and noise.
cv::Mat lit(const cv::Mat& print, const cv::Scalar& colour, double darkest = 1.0 / 3) {
    cv::Mat seen = print.clone();
    for (int x = 0; x < print.cols; ++x) {
        const double share = 1 - (1 - darkest) * x / print.cols;
        cv::multiply(seen.col(x), colour * share, seen.col(x));
    }
    cv::Mat noise(seen.size(), CV_16SC(seen.channels()));
    cv::RNG(7).fill(noise, cv::RNG::NORMAL, 0, 1.5);
    cv::add(seen, noise, seen, cv::noArray(), seen.type());
    return seen;
}

const cv::Scalar kWarm(0.7, 0.8, 0.9);

cv::Scalar meanIn(const cv::Mat& picture, const cv::Rect& box) {
    return cv::mean(picture(box));
}

void expectNear(const cv::Scalar& colour, const cv::Scalar& wanted, double tolerance,
                int channels = 3) {
    for (int c = 0; c < channels; ++c) {
        EXPECT_NEAR(colour[c], wanted[c], tolerance) << "channel " << c;
    }
}

// The print's pixels which differ from the look by more than tolerance, where print is not.
int different(const cv::Mat& look, const cv::Mat& print, int tolerance) {
    cv::Mat difference;
    cv::absdiff(look, print, difference);
    cv::Mat far = difference.reshape(1) > tolerance;
    return cv::countNonZero(far);
}

// A photograph: soft shapes of many tones.
cv::Mat photograph(cv::Size size) {
    cv::Mat photo(size, CV_8UC3);
    cv::RNG(3).fill(photo, cv::RNG::UNIFORM, 0, 256);
    cv::GaussianBlur(photo, photo, {0, 0}, 12);
    cv::normalize(photo, photo, 20, 235, cv::NORM_MINMAX);
    return photo;
}

TEST(PaperLook, TurnsUnevenlyLitColouredPaperWhite) {
    const cv::Mat print(1200, 900, CV_8UC3, kWhite);
    const cv::Mat look = paperLook(lit(print, kWarm));
    EXPECT_EQ(look.size(), print.size());
    EXPECT_EQ(look.type(), print.type());
    EXPECT_LE(different(look, print, 3), 0.0001 * static_cast<double>(print.total()));
}

TEST(PaperLook, KeepsInkDarkUnderAGradient) {
    const cv::Mat print = printedPage();
    const cv::Mat look = paperLook(lit(print, kWarm));
    cv::Mat ink;
    cv::inRange(print, kBlack, kBlack, ink);
    expectNear(cv::mean(look, ink), kBlack, 12);
    cv::Mat paper;
    cv::inRange(print, kWhite, kWhite, paper);
    expectNear(cv::mean(look, paper), kWhite, 2);
}

TEST(PaperLook, TakesASoftShadowOut) {
    const cv::Mat print = printedPage();
    cv::Mat shadow(print.size(), CV_32FC3, cv::Scalar::all(0.9));
    cv::fillPoly(shadow,
                 std::vector<std::vector<cv::Point>>{{{300, 1200}, {450, 500}, {700, 1200}}},
                 cv::Scalar::all(0.5));
    cv::GaussianBlur(shadow, shadow, {0, 0}, 15);
    cv::Mat seen;
    cv::multiply(print, shadow, seen, 1, CV_8U);
    EXPECT_LE(different(paperLook(seen), print, 60), 0.004 * static_cast<double>(print.total()));
}

TEST(PaperLook, TakesASharpShadowOut) {
    const cv::Mat print(1200, 900, CV_8UC3, kWhite);
    cv::Mat seen(print.size(), CV_8UC3, cv::Scalar::all(220));
    cv::fillPoly(seen, std::vector<std::vector<cv::Point>>{{{300, 1200}, {450, 300}, {800, 1200}}},
                 cv::Scalar::all(120));
    const cv::Mat look = paperLook(seen);
    expectNear(meanIn(look, {440, 900, 100, 100}), kWhite, 3);
    expectNear(meanIn(look, {50, 50, 100, 100}), kWhite, 3);
}

TEST(PaperLook, LeavesNoHaloAroundASharpShadow) {
    const cv::Mat print(2400, 1800, CV_8UC3, kWhite);
    cv::Mat shadow(print.size(), CV_32FC3, cv::Scalar::all(0.86));
    cv::line(shadow, {0, 900}, {900, 1300}, cv::Scalar::all(0.56), 160);
    cv::GaussianBlur(shadow, shadow, {0, 0}, 3);
    cv::Mat seen;
    cv::multiply(print, shadow, seen, 1, CV_8U);
    const cv::Mat look = paperLook(seen);
    EXPECT_LE(different(look, print, 30), 0.004 * static_cast<double>(print.total()));
    EXPECT_EQ(cv::countNonZero(blackAndWhite(greyPaperLook(seen)) == 0), 0);
}

TEST(PaperLook, TakesTheShadeOfAFoldOut) {
    const cv::Mat print(1600, 1200, CV_8UC3, kWhite);
    cv::Mat shade(print.size(), CV_32FC3, cv::Scalar::all(0.85));
    cv::fillPoly(
        shade,
        std::vector<std::vector<cv::Point>>{{{900, 0}, {1199, 0}, {1199, 1200}, {1000, 700}}},
        cv::Scalar(0.6, 0.52, 0.44)); // lit from elsewhere, so of another cast
    cv::GaussianBlur(shade, shade, {0, 0}, 1.8);
    cv::Mat seen;
    cv::multiply(print, shade, seen, 1, CV_8U);
    const cv::Mat look = paperLook(seen);
    expectNear(meanIn(look, {1080, 300, 100, 500}), kWhite, 4);
    expectNear(meanIn(look, {300, 300, 300, 500}), kWhite, 3);
}

TEST(PaperLook, KeepsThePaleColourOfAFill) {
    const cv::Scalar colours[] = {{250, 242, 235}, {225, 249, 255}, {230, 230, 230}};
    for (const cv::Scalar& colour : colours) {
        cv::Mat print = printedPage();
        print(cv::Rect(100, 400, 700, 300)).setTo(colour);
        const cv::Mat look = paperLook(lit(print, kWarm));
        expectNear(meanIn(look, {150, 450, 600, 200}), colour, 5);
        expectNear(meanIn(look, {105, 405, 40, 40}), colour, 7);
    }
}

TEST(PaperLook, KeepsFillsSeenByABlurringLens) {
    const cv::Scalar colours[] = {{130, 170, 200}, {200, 160, 120}, {215, 235, 225}};
    for (const cv::Scalar& colour : colours) {
        cv::Mat print = printedPage();
        print(cv::Rect(100, 400, 700, 300)).setTo(colour);
        cv::GaussianBlur(print, print, {0, 0}, 1.5);
        const cv::Mat look = paperLook(lit(print, kWarm, 0.7));
        expectNear(meanIn(look, {150, 450, 600, 200}), colour, 8);
    }
}

TEST(PaperLook, KeepsAFillThatAShadowCrosses) {
    const cv::Scalar colour(216, 238, 226);
    cv::Mat print = printedPage();
    print(cv::Rect(100, 400, 700, 300)).setTo(colour);
    cv::Mat shadow(print.size(), CV_32FC3, cv::Scalar::all(0.9));
    shadow.colRange(450, 900).setTo(cv::Scalar::all(0.5));
    cv::GaussianBlur(shadow, shadow, {0, 0}, 20);
    cv::Mat seen;
    cv::multiply(print, shadow, seen, 1, CV_8U);
    const cv::Mat look = paperLook(seen);
    for (int x = 150; x < 750; x += 50) {
        expectNear(meanIn(look, {x, 450, 40, 200}), colour, 6);
    }
}

TEST(PaperLook, KeepsHighlighter) {
    const cv::Scalar yellow(90, 243, 254);
    cv::Mat print = printedPage();
    print(cv::Rect(80, 330, 500, 40)).setTo(yellow);
    expectNear(meanIn(paperLook(lit(print, kWarm)), {100, 340, 460, 20}), yellow, 12);
}

TEST(PaperLook, KeepsThePencilsGrey) {
    cv::Mat print = printedPage();
    cv::line(print, {100, 80}, {800, 84}, cv::Scalar::all(160), 4, cv::LINE_AA);
    const cv::Mat look = paperLook(lit(print, kWarm));
    expectNear(meanIn(look, {440, 81, 20, 2}), cv::Scalar::all(160), 15);
}

TEST(PaperLook, KeepsPhotographs) {
    cv::Mat print = printedPage();
    const cv::Rect box(150, 300, 600, 500);
    photograph(box.size()).copyTo(print(box));
    const cv::Mat look = paperLook(lit(print, kWarm));
    const cv::Rect inner(box.x + 4, box.y + 4, box.width - 8, box.height - 8);
    cv::Mat difference;
    cv::absdiff(look(inner), print(inner), difference);
    EXPECT_LE(cv::mean(difference.reshape(1))[0], 6);
}

TEST(PaperLook, FillsAWedgeOfDeskWithPaper) {
    const cv::Scalar desks[] = {{30, 30, 30}, {60, 120, 170}, {140, 90, 60}, {170, 175, 180}};
    for (const cv::Scalar& desk : desks) {
        cv::Mat seen = lit(printedPage(), kWarm, 0.8);
        cv::fillPoly(seen,
                     std::vector<std::vector<cv::Point>>{{{0, 0}, {15, 0}, {3, 1199}, {0, 1199}}},
                     desk);
        cv::fillPoly(
            seen, std::vector<std::vector<cv::Point>>{{{0, 0}, {899, 0}, {899, 20}, {0, 6}}}, desk);
        const cv::Mat look = paperLook(seen);
        EXPECT_EQ(different(look.colRange(0, 70),
                            cv::Mat(look.size(), CV_8UC3, kWhite).colRange(0, 70), 16),
                  0)
            << desk;
        EXPECT_EQ(different(look.rowRange(0, 80),
                            cv::Mat(look.size(), CV_8UC3, kWhite).rowRange(0, 80), 16),
                  0)
            << desk;
    }
}

TEST(PaperLook, FillsTheDeskBesideACurledEdge) {
    cv::Mat seen = lit(printedPage(), kWarm, 0.8);
    for (int y = 0; y < seen.rows; ++y) {
        const int depth = static_cast<int>(16 * std::sin(3.14 * y / seen.rows));
        seen.row(y).colRange(0, depth).setTo(cv::Scalar(60, 120, 170));
    }
    const cv::Mat look = paperLook(seen);
    const cv::Mat white(look.size(), CV_8UC3, kWhite);
    EXPECT_EQ(different(look.colRange(0, 70), white.colRange(0, 70), 16), 0);
}

TEST(PaperLook, FillsTheDeskBesideADeeplyCurledEdge) {
    cv::Mat seen = lit(printedPage(), kWarm, 0.8);
    for (int y = 0; y < seen.rows; ++y) {
        const int depth = static_cast<int>(38 * std::sin(3.14 * y / seen.rows));
        seen.row(y).colRange(0, depth).setTo(cv::Scalar(60, 120, 170));
    }
    const cv::Mat look = paperLook(seen);
    const cv::Mat white(look.size(), CV_8UC3, kWhite);
    EXPECT_EQ(different(look.colRange(0, 70), white.colRange(0, 70), 16), 0);
}

TEST(PaperLook, FillsTheDeskBesideAPartOfASide) {
    cv::Mat seen = lit(printedPage(), kWarm, 0.8);
    seen(cv::Rect(0, 100, 2, 200)).setTo(cv::Scalar(60, 120, 170));
    const cv::Mat look = paperLook(seen);
    const cv::Mat white(look.size(), CV_8UC3, kWhite);
    EXPECT_EQ(different(look.colRange(0, 70), white.colRange(0, 70), 16), 0);
}

// A card with rounded corners on a dark desk.
cv::Mat card(const cv::Scalar& ground) {
    constexpr int kRadius = 38;
    cv::Mat seen(540, 856, CV_8UC3, cv::Scalar(30, 30, 30));
    const cv::Rect box(0, 0, seen.cols, seen.rows);
    cv::rectangle(seen, {kRadius, 0}, {box.width - kRadius, box.height}, ground, cv::FILLED);
    cv::rectangle(seen, {0, kRadius}, {box.width, box.height - kRadius}, ground, cv::FILLED);
    for (const int x : {kRadius, box.width - 1 - kRadius}) {
        for (const int y : {kRadius, box.height - 1 - kRadius}) {
            cv::circle(seen, {x, y}, kRadius, ground, cv::FILLED, cv::LINE_AA);
        }
    }
    cv::putText(seen, "Library card", {100, 120}, cv::FONT_HERSHEY_SIMPLEX, 1.5, kBlack, 3);
    return seen;
}

TEST(PaperLook, FillsRoundedCorners) {
    const cv::Scalar grounds[] = {{225, 228, 230}, {120, 80, 35}, {150, 190, 160}};
    for (const cv::Scalar& ground : grounds) {
        const cv::Mat look = paperLook(card(ground));
        const cv::Scalar wanted = meanIn(look, {400, 300, 100, 100});
        for (const int x : {0, look.cols - 40}) {
            for (const int y : {0, look.rows - 40}) {
                const cv::Mat corner = look(cv::Rect(x, y, 40, 40));
                EXPECT_EQ(different(corner, cv::Mat(corner.size(), CV_8UC3, wanted), 24), 0)
                    << ground << ", corner at " << x << " " << y;
            }
        }
    }
}

TEST(PaperLook, KeepsTheColourOfSheetsThatAreNotWhite) {
    const cv::Scalar kDarkBlue(120, 75, 30);
    const cv::Scalar kGreen(170, 205, 165);
    const cv::Scalar kPink(205, 180, 225);
    const cv::Scalar kYellow(110, 225, 235);
    const cv::Scalar grounds[] = {kDarkBlue, kGreen, kPink, kYellow};
    for (const cv::Scalar& ground : grounds) {
        const cv::Scalar seen = meanIn(paperLook(card(ground)), {400, 300, 100, 100});
        const double brighter =
            std::max({seen[0], seen[1], seen[2]}) / std::max({ground[0], ground[1], ground[2]});
        EXPECT_GE(brighter, 0.95);
        EXPECT_LE(brighter, 1.3);
        expectNear(seen, ground * brighter, 4);
    }
}

TEST(PaperLook, TurnsPaperWhiteUnderLampsOfAnyColour) {
    const cv::Scalar lamps[] = {{0.55, 0.78, 0.95}, {0.95, 0.85, 0.75}, {0.8, 0.86, 0.82}};
    for (const cv::Scalar& lamp : lamps) {
        const cv::Mat look = paperLook(lit(printedPage(), lamp));
        expectNear(meanIn(look, {10, 10, 60, 1100}), kWhite, 3);
    }
}

TEST(PaperLook, LeavesPrintNearTheBorder) {
    cv::Mat print = printedPage();
    cv::rectangle(print, {22, 22, 856, 1156}, kBlack, 3);
    cv::putText(print, "5", {4, 600}, cv::FONT_HERSHEY_SIMPLEX, 0.5, kBlack, 2);
    const cv::Mat look = paperLook(lit(print, kWarm));
    EXPECT_LE(different(look, print, 60), 0.001 * static_cast<double>(print.total()));
    EXPECT_LE(meanIn(look, {21, 300, 3, 300})[0], 40);
    double least = 0;
    cv::minMaxLoc(look(cv::Rect(4, 585, 12, 18)).clone().reshape(1), &least);
    EXPECT_LE(least, 60);
}

TEST(PaperLook, LeavesAPageWithoutPaperAsItIs) {
    const cv::Mat photo = photograph({900, 1200});
    const cv::Mat look = paperLook(photo);
    EXPECT_LE(different(look, photo, 1), 0.02 * static_cast<double>(photo.total()));
    const cv::Mat black(300, 200, CV_8UC3, kBlack);
    EXPECT_EQ(different(paperLook(black), black, 0), 0);
}

TEST(PaperLook, LeavesAPhotographWithAPaleWallAsItIs) {
    cv::Mat photo = photograph({900, 1200});
    photo.rowRange(0, 500).setTo(cv::Scalar(190, 195, 200));
    const cv::Mat look = paperLook(photo);
    EXPECT_LE(different(look, photo, 1), 0.02 * static_cast<double>(photo.total()));
}

TEST(PaperLook, LeavesPagesOfOneColourOne) {
    const cv::Scalar colours[] = {kBlack, kWhite, {0, 0, 255}, {255, 0, 0}, {128, 128, 128}};
    for (const cv::Scalar& colour : colours) {
        const cv::Mat page(300, 200, CV_8UC3, colour);
        const cv::Mat look = paperLook(page);
        EXPECT_EQ(different(look, cv::Mat(page.size(), CV_8UC3, look.at<cv::Vec3b>(150, 100)), 1),
                  0)
            << colour;
    }
    const cv::Mat red(300, 200, CV_8UC3, cv::Scalar(0, 0, 255));
    expectNear(meanIn(paperLook(red), {0, 0, 200, 300}), {0, 0, 240}, 20);
}

TEST(PaperLook, KeepsWhitePrintOnBlack) {
    cv::Mat print = printedPage();
    cv::Mat seen = kWhite - print;
    cv::Mat noise(seen.size(), CV_8UC3);
    cv::RNG(3).fill(noise, cv::RNG::UNIFORM, 0, 12);
    seen = seen * 0.8 + noise;
    EXPECT_LE(different(paperLook(seen), seen, 40), 0.002 * static_cast<double>(seen.total()));
    const cv::Mat bits = blackAndWhite(greyPaperLook(seen));
    cv::Mat wanted;
    cv::cvtColor(print, wanted, cv::COLOR_BGR2GRAY);
    EXPECT_LE(cv::countNonZero(bits != (wanted < 128)), 0.01 * static_cast<double>(bits.total()));
}

TEST(PaperLook, TakesGreyPages) {
    const cv::Mat print = printedPage(CV_8UC1);
    const cv::Mat look = paperLook(lit(print, cv::Scalar(0.85)));
    ASSERT_EQ(look.type(), CV_8UC1);
    EXPECT_LE(different(look, print, 60), 0.001 * static_cast<double>(print.total()));
}

TEST(GreyPaperLook, LooksLikeThePaperLookInGrey) {
    cv::Mat print = printedPage();
    print(cv::Rect(100, 400, 700, 300)).setTo(cv::Scalar(216, 238, 226));
    const cv::Mat seen = lit(print, kWarm);
    cv::Mat wanted;
    cv::cvtColor(paperLook(seen), wanted, cv::COLOR_BGR2GRAY);
    const cv::Mat look = greyPaperLook(seen);
    ASSERT_EQ(look.type(), CV_8UC1);
    EXPECT_LE(different(look, wanted, 12), 0.001 * static_cast<double>(wanted.total()));
}

TEST(PaperLook, TakesPagesOfAnySize) {
    for (const int width : {1, 2, 3, 7, 33, 801}) {
        for (const int height : {1, 2, 5, 64, 900}) {
            for (const int type : {CV_8UC1, CV_8UC3}) {
                const cv::Mat page(height, width, type, cv::Scalar::all(200));
                const cv::Mat look = paperLook(page);
                EXPECT_EQ(look.size(), page.size());
                EXPECT_EQ(look.type(), type);
                EXPECT_EQ(greyPaperLook(page).size(), page.size());
                EXPECT_EQ(blackAndWhite(look).size(), page.size());
            }
        }
    }
}

TEST(PaperLook, GivesTheSameOnSeveralThreads) {
    const cv::Mat seen = lit(printedPage(), kWarm);
    const cv::Mat alone = paperLook(seen);
    std::vector<cv::Mat> looks(4);
    std::vector<std::thread> threads;
    for (cv::Mat& look : looks) {
        threads.emplace_back([&] { look = paperLook(seen); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const cv::Mat& look : looks) {
        EXPECT_EQ(different(look, alone, 0), 0);
    }
}

TEST(BlackAndWhite, HasTwoLevelsAndOneChannel) {
    const cv::Mat bits = blackAndWhite(paperLook(lit(printedPage(), kWarm)));
    ASSERT_EQ(bits.type(), CV_8UC1);
    EXPECT_EQ(cv::countNonZero((bits != 0) & (bits != 255)), 0);
}

TEST(BlackAndWhite, KeepsThinStrokes) {
    cv::Mat print(1200, 900, CV_8UC3, kWhite);
    for (int y = 100; y < 1100; y += 100) {
        cv::line(print, {100, y}, {800, y}, kBlack, 1);
    }
    cv::GaussianBlur(print, print, {0, 0}, 0.8);
    const cv::Mat bits = blackAndWhite(paperLook(lit(print, kWarm)));
    for (int y = 100; y < 1100; y += 100) {
        EXPECT_EQ(cv::countNonZero(bits(cv::Rect(110, y, 680, 1))), 0) << "line " << y;
    }
}

TEST(BlackAndWhite, HasNoSpecksOnNoisyPaper) {
    const cv::Mat print(1200, 900, CV_8UC3, kWhite);
    cv::Mat seen = lit(print, kWarm);
    cv::Mat noise(seen.size(), CV_16SC3);
    cv::RNG(5).fill(noise, cv::RNG::NORMAL, 0, 4);
    cv::add(seen, noise, seen, cv::noArray(), CV_8U);
    const cv::Mat bits = blackAndWhite(paperLook(seen));
    EXPECT_EQ(cv::countNonZero(bits == 0), 0);
}

TEST(BlackAndWhite, HasNoSpecksInFills) {
    // Those next to the tone that parts black from white may be either, in patches.
    for (const int tone : {60, 90, 105, 116, 140, 150, 165, 180, 200, 220}) {
        cv::Mat print(1200, 900, CV_8UC3, kWhite);
        print(cv::Rect(80, 300, 740, 400)).setTo(cv::Scalar::all(tone));
        const cv::Mat bits = blackAndWhite(paperLook(lit(print, kWarm, 0.7)));
        const cv::Rect inner(100, 320, 700, 360);
        const int black = cv::countNonZero(bits(inner) == 0);
        EXPECT_TRUE(black == 0 || black == inner.area()) << black << " black at " << tone;
    }
}

TEST(BlackAndWhite, HasNoLinesAlongTheEdgesOfFills) {
    for (const int tone : {135, 145, 160, 190}) {
        cv::Mat print(1200, 900, CV_8UC3, kWhite);
        print(cv::Rect(80, 300, 740, 400)).setTo(cv::Scalar(170, 215, 230));
        for (int x = 121; x < 700; x += 143) {
            print(cv::Rect(x, 401, 98, 203)).setTo(cv::Scalar::all(tone));
        }
        cv::GaussianBlur(print, print, {0, 0}, 0.8);
        const cv::Mat bits = blackAndWhite(greyPaperLook(lit(print, kWarm, 0.7)));
        EXPECT_EQ(cv::countNonZero(bits == 0), 0) << tone;
    }
}

TEST(BlackAndWhite, HasNoBarsAroundHighlighter) {
    const cv::Scalar markers[] = {{90, 243, 254}, {120, 230, 150}, {200, 170, 250}};
    for (const cv::Scalar& marker : markers) {
        cv::Mat print = printedPage();
        const cv::Mat plain = blackAndWhite(greyPaperLook(lit(print, kWarm)));
        cv::Mat strips(print.size(), CV_8UC3, kWhite);
        for (int y = 90; y < 1000; y += 60) {
            strips(cv::Rect(75, y, 560, 42)).setTo(marker);
        }
        cv::min(print, strips, print);
        const cv::Mat bits = blackAndWhite(greyPaperLook(lit(print, kWarm)));
        const int more = cv::countNonZero((bits == 0) & (plain != 0));
        EXPECT_LE(more, 0.1 * cv::countNonZero(plain == 0)) << marker;
    }
}

TEST(BlackAndWhite, KeepsReversedPrint) {
    cv::Mat print(1200, 900, CV_8UC3, kWhite);
    print(cv::Rect(80, 300, 740, 120)).setTo(cv::Scalar(60, 40, 30));
    cv::putText(print, "White on dark", {110, 380}, cv::FONT_HERSHEY_SIMPLEX, 1.5, kWhite, 3);
    const cv::Mat bits = blackAndWhite(paperLook(lit(print, kWarm)));
    cv::Mat wanted;
    cv::cvtColor(print, wanted, cv::COLOR_BGR2GRAY);
    EXPECT_LE(cv::countNonZero(bits != (wanted > 128)), 0.006 * 740 * 120);
}

TEST(BlackAndWhite, ReadsDarkPrintOnAMidTone) {
    cv::Mat print(1200, 900, CV_8UC3, kWhite);
    print(cv::Rect(80, 300, 740, 120)).setTo(cv::Scalar::all(170));
    cv::putText(print, "Black on grey", {110, 380}, cv::FONT_HERSHEY_SIMPLEX, 1.5, kBlack, 3);
    const cv::Mat bits = blackAndWhite(paperLook(lit(print, kWarm)));
    cv::Mat wanted;
    cv::cvtColor(print, wanted, cv::COLOR_BGR2GRAY);
    const cv::Rect inner(90, 310, 720, 100);
    EXPECT_LE(cv::countNonZero(bits(inner) != (wanted(inner) > 85)), 0.006 * inner.area());
}

TEST(ToneKernels, GiveTheSameWithEveryInstructionSet) {
    constexpr int kCount = 1003;
    cv::RNG random(11);
    cv::Mat samples(6, kCount, CV_8U);
    random.fill(samples, cv::RNG::UNIFORM, 0, 256);
    cv::Mat values(6, kCount, CV_16U);
    random.fill(values.rowRange(0, 2), cv::RNG::UNIFORM, 0, 65536);
    random.fill(values.rowRange(2, 4), cv::RNG::UNIFORM, 0, kShareOne + 1);
    const GridRow gain{values.ptr<std::uint16_t>(0), values.ptr<std::uint16_t>(1), 52345};
    const GridRow paper{values.ptr<std::uint16_t>(2), values.ptr<std::uint16_t>(3), 52345};
    random.fill(values.rowRange(4, 6), cv::RNG::UNIFORM, 0, 256);
    const GridRow levels{values.ptr<std::uint16_t>(4), values.ptr<std::uint16_t>(5), 52345};
    std::vector<cv::Mat> results;
    for (const ToneKernels& kernels : allToneKernels()) {
        cv::Mat result(5, kCount, CV_8U, kBlack);
        kernels.evenRow(samples.ptr(0), gain, paper, kCount, result.ptr(0));
        kernels.thresholdRow(samples.ptr(4), levels, kCount, result.ptr(1));
        kernels.columnExtremes(samples.ptr(2), samples.step[0], kCount, result.ptr(2),
                               result.ptr(3));
        kernels.removeSpecks(samples.ptr(3) + 1, samples.ptr(4) + 1, samples.ptr(5) + 1, kCount - 2,
                             result.ptr(4));
        results.push_back(result);
    }
    for (const cv::Mat& result : results) {
        EXPECT_EQ(different(result, results.front(), 0), 0);
    }
}

} // namespace
} // namespace doccam::page
