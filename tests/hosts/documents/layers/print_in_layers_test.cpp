// Pages whose print is hard to part from its ground.
#include "colour_difference.h"
#include "documents/layers/layers.h"
#include "flattened_layers.h"
#include "scene/pages/contents.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include <string>
#include <vector>

namespace doccam::test {

namespace {

using host::splitLayers;

constexpr double kDpi = 200;
const cv::Scalar kPaper = cv::Scalar::all(255);

void write(cv::Mat page, const std::string& text, int y, const cv::Scalar& colour, double size,
           int thickness) {
    cv::putText(page, text, {60, y}, cv::FONT_HERSHEY_SIMPLEX, size, colour, thickness,
                cv::LINE_AA);
}

// Where all of the pixels around have that colour, too.
cv::Mat coreOf(const cv::Mat& page, const cv::Scalar& colour) {
    cv::Mat core;
    cv::inRange(page, colour - cv::Scalar::all(1), colour + cv::Scalar::all(1), core);
    cv::erode(core, core, cv::Mat::ones(3, 3, CV_8U));
    return core;
}

cv::Mat shownOf(const cv::Mat& page) {
    const auto layers = splitLayers(page, kDpi);
    EXPECT_TRUE(layers);
    return layers ? flattened(*layers, page.size()) : cv::Mat::zeros(page.size(), page.type());
}

// The share of the pixels off the edges that are far from those of the page.
double shareOfOthers(const cv::Mat& shown, const cv::Mat& page) {
    cv::Mat before;
    cv::Mat after;
    cv::cvtColor(page, before, cv::COLOR_BGR2GRAY);
    cv::cvtColor(shown, after, cv::COLOR_BGR2GRAY);
    cv::Mat range;
    cv::morphologyEx(before, range, cv::MORPH_GRADIENT, cv::Mat::ones(5, 5, CV_8U));
    const cv::Mat even = range < 40;
    cv::absdiff(before, after, before);
    return cv::countNonZero(even & (before > 25)) / static_cast<double>(cv::countNonZero(even));
}

// Light and bold, in narrow lines.
void writeReversed(cv::Mat page) {
    write(page, "Dark blue heading, mm", 130, kPaper, 2.4, 6);
    for (int y = 190; y < 460; y += 42) {
        write(page, "mmm began nnn garage www home MMM begins eee aaa", y, kPaper, 1.2, 5);
    }
    cv::GaussianBlur(page, page, {}, 0.7);
}

TEST(PrintInLayers, StaysLightOnADarkFill) {
    cv::Mat page(2300, 1650, CV_8UC3, kPaper);
    cv::rectangle(page, {40, 40, 1560, 460}, {107, 41, 87}, cv::FILLED);
    writeReversed(page);
    EXPECT_LT(shareOfOthers(shownOf(page), page), 0.0015);
}

TEST(PrintInLayers, StaysLightOnAnUnevenDarkGround) {
    cv::Mat page(2300, 1650, CV_8UC3, kPaper);
    for (int x = 40; x < 1600; ++x) {
        page.rowRange(40, 500).col(x).setTo(cv::Scalar(60 + x / 16, 30, 20 + x / 12));
    }
    writeReversed(page);
    EXPECT_LT(shareOfOthers(shownOf(page), page), 0.0015);
}

TEST(PrintInLayers, KeepsTheColoursOfPalePrint) {
    cv::Mat page(900, 1500, CV_8UC3, kPaper);
    const std::vector<cv::Scalar> colours{
        {0, 0, 0},       {0, 0, 200},     {200, 0, 0},     {0, 130, 0},   {0, 140, 230},
        {180, 180, 180}, {215, 215, 215}, {120, 240, 240}, {150, 0, 150}, {160, 160, 0}};
    for (std::size_t i = 0; i < colours.size(); ++i) {
        write(page, "Words in print", 80 + 80 * static_cast<int>(i), colours[i], 2, 6);
    }
    const cv::Mat shown = shownOf(page);
    for (const cv::Scalar& colour : {colours[5], colours[6], colours[7]}) {
        const cv::Mat core = coreOf(page, colour);
        EXPECT_LT(colourDifference(meanColour(page, core), meanColour(shown, core)), 6) << colour;
    }
}

TEST(PrintInLayers, ShowsFaintPrint) {
    cv::Mat page(900, 1500, CV_8UC3, kPaper);
    write(page, "Plain words", 120, cv::Scalar::all(20), 2, 6);
    const std::vector<int> levels{236, 240, 244};
    for (std::size_t i = 0; i < levels.size(); ++i) {
        write(page, "Faint words", 240 + 120 * static_cast<int>(i), cv::Scalar::all(levels[i]), 1.2,
              4);
    }
    const cv::Mat shown = shownOf(page);
    for (const int level : levels) {
        const cv::Mat core = coreOf(page, cv::Scalar::all(level));
        EXPECT_NEAR(cv::mean(shown, core)[1], level, 7) << level;
        EXPECT_LT(cv::mean(shown, core)[1], 253) << level;
    }
}

TEST(SplitLayers, AreNoneOfASheetPhotographedOnWood) {
    cv::Mat grain(1200, 40, CV_32F);
    cv::RNG(5).fill(grain, cv::RNG::NORMAL, 0, 240);
    cv::GaussianBlur(grain, grain, {}, 3, 6);
    cv::resize(grain, grain, {1600, 1200}, 0, 0, cv::INTER_CUBIC);
    cv::Mat page(1200, 1600, CV_8UC3, cv::Scalar(70, 100, 140));
    cv::merge(std::vector<cv::Mat>(3, grain), grain);
    cv::add(page, grain, page, cv::noArray(), CV_8U);
    cv::rectangle(page, cv::Rect(300, 200, 1000, 800), cv::Scalar::all(225), cv::FILLED);
    write(page.colRange(300, 1600), "Words on a sheet", 500, cv::Scalar::all(30), 2, 5);
    cv::GaussianBlur(page, page, {}, 0.8);
    EXPECT_FALSE(splitLayers(page, kDpi));
}

} // namespace

} // namespace doccam::test
