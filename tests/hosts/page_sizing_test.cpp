// Papers by name, and which of all clues gives a page its size.
#include "documents/paper/page_sizing.h"
#include "documents/paper/paper_names.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

using namespace doccam::host;

constexpr Millimetres kA4{210, 297};

void expectSize(const SizedPage& page, double width, double height) {
    EXPECT_NEAR(page.size.width, width, 0.01);
    EXPECT_NEAR(page.size.height, height, 0.01);
}

TEST(PaperNames, AreReadInEitherCase) {
    EXPECT_EQ(parsePaper("a4"), kA4);
    EXPECT_EQ(parsePaper("A4"), kA4);
    EXPECT_EQ(parsePaper("letter"), (Millimetres{215.9, 279.4}));
    EXPECT_EQ(parsePaper("id1"), (Millimetres{85.6, 53.98}));
}

TEST(PaperNames, IncludeSidesInMillimetres) {
    EXPECT_EQ(parsePaper("100x150"), (Millimetres{100, 150}));
    EXPECT_EQ(parsePaper("10x2000"), (Millimetres{10, 2000}));
    EXPECT_EQ(parsePaper("99.5X148.5"), (Millimetres{99.5, 148.5}));
    for (const char* text : {"", "a6", "a4 ", "x", "100", "100x", "x100", "9.9x100", "100x2001",
                             "-100x100", "nanx100", "infx100", "100x100x100", "1e9x100"}) {
        EXPECT_FALSE(parsePaper(text)) << text;
    }
}

TEST(PaperNames, NameTheirPaperWhicheverWayItIsTurned) {
    EXPECT_EQ(paperText(kA4), "a4");
    EXPECT_EQ(paperText({297, 210}), "a4");
    EXPECT_EQ(paperText({100.5, 150}), "100.5x150");
}

TEST(PaperNames, LeaveOutDensitiesOutOfRange) {
    EXPECT_EQ(parseDpi("20"), 20);
    EXPECT_EQ(parseDpi("299.5"), 299.5);
    EXPECT_EQ(parseDpi("2400"), 2400);
    for (const char* text : {"", "19.9", "2400.1", "nan", "inf", "300dpi", "-300"}) {
        EXPECT_FALSE(parseDpi(text)) << text;
    }
}

TEST(PageSizing, TakesTheSurestClue) {
    const cv::Size pixels(1654, 2339);
    SizeClues clues{.options = {.dpi = 300, .paper = Millimetres{148, 210}},
                    .calibrated = Millimetres{100, 141},
                    .inFile = Millimetres{50, 70}};
    EXPECT_EQ(sizePage(pixels, clues).from, DpiSource::kOption);
    expectSize(sizePage(pixels, clues), 140.04, 198.04);
    clues.options.dpi.reset();
    EXPECT_EQ(sizePage(pixels, clues).from, DpiSource::kPaper);
    expectSize(sizePage(pixels, clues), 148, 210);
    clues.options.paper.reset();
    EXPECT_EQ(sizePage(pixels, clues).from, DpiSource::kCalibration);
    expectSize(sizePage(pixels, clues), 100, 141);
    clues.calibrated.reset();
    EXPECT_EQ(sizePage(pixels, clues).from, DpiSource::kFile);
    expectSize(sizePage(pixels, clues), 50, 70);
    clues.inFile.reset();
    EXPECT_EQ(sizePage(pixels, clues).from, DpiSource::kGuess);
    expectSize(sizePage(pixels, clues), 210, 297);
}

TEST(PageSizing, MakesAPageOfExactlyThePaperTurnedLikeThePicture) {
    const SizeClues clues{.options = {.paper = kA4}};
    const SizedPage upright = sizePage({1000, 1420}, clues);
    EXPECT_EQ(upright.size, kA4);
    EXPECT_EQ(upright.picture, kA4);
    EXPECT_NEAR(upright.dpi, (1000 * 25.4 / 210 + 1420 * 25.4 / 297) / 2, 1e-9);
    EXPECT_EQ(sizePage({1420, 1000}, clues).size, (Millimetres{297, 210}));
    const SizeClues card{.options = {.paper = parsePaper("id1")}};
    EXPECT_EQ(sizePage({1000, 1420}, card).size, (Millimetres{53.98, 85.6}));
}

TEST(PageSizing, LaysAPictureOfOtherProportionsWholeAndUndistortedOnThePaper) {
    const SizedPage page = sizePage({1000, 1000}, {.options = {.paper = kA4}});
    EXPECT_EQ(page.size, kA4);
    EXPECT_NEAR(page.picture.width, 210, 1e-9);
    EXPECT_NEAR(page.picture.height, 210, 1e-9);
    EXPECT_NEAR(page.dpi, 1000 * 25.4 / 210, 1e-9);
}

TEST(PageSizing, GuessesThePaperFromTheProportions) {
    const auto guess = [](int width, int height) { return sizePage({width, height}, {}); };
    expectSize(guess(1000, 1414), 210, 297);
    expectSize(guess(1414, 1010), 297, 210);
    expectSize(guess(1294, 1000), 279.4, 215.9);
    expectSize(guess(1000, 1647), 215.9, 355.6);
    expectSize(guess(1586, 1000), 85.6, 53.98);
    EXPECT_FALSE(guess(1000, 1414).isKnown());
}

TEST(PageSizing, GuessesThatOtherPicturesFillWhatTheyCanOfA4) {
    expectSize(sizePage({1000, 1000}, {}), 210, 210);
    expectSize(sizePage({4000, 3000}, {}), 280, 210);
    expectSize(sizePage({100, 2000}, {}), 14.85, 297);
}

TEST(PageSizing, BelievesAFileThatSaysItsDensity) {
    const auto fax = credibleSize({1728, 1100}, Density{204, 98});
    ASSERT_TRUE(fax);
    EXPECT_NEAR(fax->width, 215.15, 0.01);
    EXPECT_NEAR(fax->height, 285.1, 0.01);
}

TEST(PageSizing, DoesNotBelieveDensitiesThatProgramsWriteOfEveryPicture) {
    const auto believes = [](double across, double down) {
        return credibleSize({1654, 2339}, Density{across, down}).has_value();
    };
    EXPECT_TRUE(believes(200, 200));
    EXPECT_FALSE(believes(72, 72));
    EXPECT_FALSE(believes(72.009, 72.009)); // 2835 pixels per metre
    EXPECT_FALSE(believes(96.012, 96.012));
    EXPECT_FALSE(believes(1, 1));
    EXPECT_FALSE(believes(65535, 65535));
    EXPECT_FALSE(believes(100, 400));
    EXPECT_FALSE(believes(std::numeric_limits<double>::infinity(), 200));
    EXPECT_FALSE(believes(std::numeric_limits<double>::quiet_NaN(), 200));
    EXPECT_FALSE(credibleSize({100, 100}, Density{300, 300})); // a sheet of 8 millimetres
    EXPECT_FALSE(credibleSize({1654, 2339}, std::nullopt));
}

} // namespace
