// Drawn pages in layers: their bytes, words and colours.
#include "colour_difference.h"
#include "documents/layers/layers.h"
#include "flattened_layers.h"
#include "reading.h"
#include "scene/pages/contents.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace doccam::test {

namespace {

using host::Layers;
using host::splitLayers;
using virtualcam::PrintedPage;
using virtualcam::PrintedRegion;
using virtualcam::RegionKind;

constexpr int kReadingDpi = 300;
constexpr double kWords = 0.985;
constexpr std::size_t kPageBytes = 63000; // of 70 kB, without text layer and PDF
constexpr std::size_t kPicturePageBytes = 103000;

cv::Size readingSize(const PrintedPage& print) {
    constexpr double kMillimetresPerInch = 25.4;
    return {cvRound(print.millimetres.width * kReadingDpi / kMillimetresPerInch),
            cvRound(print.millimetres.height * kReadingDpi / kMillimetresPerInch)};
}

double wordsOf(const Layers& layers, const PrintedPage& print) {
    const cv::Mat page = flattened(layers, readingSize(print));
    return compareWords(print, readWords(page, kReadingDpi), page.size(), true).found;
}

cv::Rect placeOf(const PrintedRegion& region, const PrintedPage& print, cv::Size page) {
    const double scale = static_cast<double>(page.width) / print.picture.cols;
    constexpr int kRim = 4;
    const cv::Rect& box = region.box;
    return cv::Rect(cvRound(box.x * scale) + kRim, cvRound(box.y * scale) + kRim,
                    cvRound(box.width * scale) - 2 * kRim, cvRound(box.height * scale) - 2 * kRim) &
           cv::Rect({}, page);
}

// The fill's pixels off its print.
cv::Mat groundOf(const cv::Mat& fill) {
    cv::Mat grey;
    cv::cvtColor(fill, grey, cv::COLOR_BGR2GRAY);
    cv::Mat ordered;
    cv::sort(grey.clone().reshape(1, 1), ordered, cv::SORT_EVERY_ROW + cv::SORT_ASCENDING);
    const int middle = ordered.at<unsigned char>(ordered.cols / 2);
    cv::Mat ground;
    cv::inRange(grey, middle - 8, middle + 8, ground);
    cv::erode(ground, ground, cv::Mat::ones(5, 5, CV_8U));
    return ground;
}

void expectSameFills(const PrintedPage& print) {
    const cv::Mat page = photographed(print);
    const auto layers = splitLayers(page, kPageDpi);
    ASSERT_TRUE(layers);
    EXPECT_LT(bytesOf(*layers), kPageBytes);
    const cv::Mat shown = flattened(*layers, page.size());
    for (const PrintedRegion& region : print.regions) {
        const cv::Rect place = placeOf(region, print, page.size());
        const cv::Mat mask = groundOf(page(place));
        EXPECT_LT(colourDifference(meanColour(page(place), mask), meanColour(shown(place), mask)),
                  6)
            << place;
    }
}

TEST(Layers, KeepSmallPrintReadableInFewBytes) {
    cv::RNG random(1);
    const PrintedPage print = virtualcam::printSmallPrint(random);
    const auto layers = splitLayers(photographed(print), kPageDpi);
    ASSERT_TRUE(layers);
    EXPECT_LT(bytesOf(*layers), kPageBytes);
    EXPECT_TRUE(layers->background.empty());
    EXPECT_GE(wordsOf(*layers, print), kWords);
}

TEST(Layers, KeepReversedPrintReadable) {
    cv::RNG random(2);
    const PrintedPage print = virtualcam::printReversedPrint(random);
    const auto layers = splitLayers(photographed(print), kPageDpi);
    ASSERT_TRUE(layers);
    EXPECT_LT(bytesOf(*layers), kPageBytes);
    EXPECT_GE(wordsOf(*layers, print), kWords);
}

TEST(Layers, KeepTheColoursOfFills) {
    cv::RNG random(1);
    expectSameFills(virtualcam::printFills(random));
}

TEST(Layers, KeepTheColoursOfHighlighter) {
    cv::RNG random(1);
    expectSameFills(virtualcam::printHighlighter(random));
}

TEST(Layers, KeepPicturesInTheBackground) {
    cv::RNG random(1);
    const PrintedPage print = virtualcam::printPictures(random);
    const cv::Mat page = photographed(print);
    const auto layers = splitLayers(page, kPageDpi);
    ASSERT_TRUE(layers);
    EXPECT_LT(bytesOf(*layers), kPicturePageBytes);
    const cv::Mat shown = flattened(*layers, page.size());
    int pictures = 0;
    for (const PrintedRegion& region : print.regions) {
        if (region.kind == RegionKind::kPicture) {
            const cv::Rect place = placeOf(region, print, page.size());
            cv::Mat blurred;
            cv::GaussianBlur(page(place), blurred, {}, kPageDpi / 150);
            EXPECT_GT(structuralSimilarity(blurred, shown(place)), 0.9) << place;
            ++pictures;
        }
    }
    EXPECT_GT(pictures, 0);
}

} // namespace

} // namespace doccam::test
