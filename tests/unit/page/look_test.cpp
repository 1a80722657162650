// What a page looks like once its light is even.
#include "lit_pages.h"
#include "page/look.h"
#include "page/paper/tone_kernels.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cstdint>
#include <thread>
#include <vector>

namespace doccam::page {
namespace {

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

TEST(PaperLook, KeepsAPictureWhosePaleSkyRunsIntoThePaper) {
    cv::Mat print = printedPage();
    const cv::Rect box(150, 300, 600, 500);
    cv::Mat picture(box.size(), CV_8UC3);
    for (int y = 0; y < picture.rows; ++y) {
        for (int x = 0; x < picture.cols; ++x) {
            const int cloud = std::max(0, 250 - (x + y) / 2);
            picture.at<cv::Vec3b>(y, x) =
                y < 350 ? cv::Vec3b(cv::saturate_cast<unsigned char>(150 + cloud),
                                    cv::saturate_cast<unsigned char>(140 + cloud),
                                    cv::saturate_cast<unsigned char>(130 + cloud))
                        : cv::Vec3b(40, 90, 60);
        }
    }
    picture.copyTo(print(box));
    const cv::Mat look = paperLook(lit(print, kWarm, 0.9));
    const cv::Rect sky(box.x + 400, box.y + 100, 150, 200);
    expectNear(meanIn(look, sky), cv::mean(print(sky)), 12);
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
