// Counting levels, and Otsu's threshold against OpenCV's.
#include "docimage/pixels/levels.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <numeric>
#include <vector>

namespace {

using doccam::Levels;

Levels levelsOf(const cv::Mat& row) {
    Levels levels{};
    doccam::countLevels(row.data, row.cols, levels);
    return levels;
}

int librarysLevel(const cv::Mat& row) {
    cv::Mat binary;
    return static_cast<int>(cv::threshold(row, binary, 0, 255, cv::THRESH_OTSU));
}

// Pixels around a few levels, as in pictures of a sheet with print on a desk.
cv::Mat heaps(cv::RNG& random) {
    cv::Mat row(1, random.uniform(1, 5000), CV_8UC1);
    for (int begin = 0; begin < row.cols;) {
        const int end = std::min(begin + random.uniform(1, 2000), row.cols);
        random.fill(row.colRange(begin, end), cv::RNG::NORMAL, random.uniform(-20, 275),
                    random.uniform(0.0, 30.0));
        begin = end;
    }
    return row;
}

TEST(CountLevels, CountsEachPixelOnceForAnyPictureSize) {
    for (int count = 0; count < 20; ++count) {
        std::vector<unsigned char> pixels(static_cast<std::size_t>(count));
        std::iota(pixels.begin(), pixels.end(), static_cast<unsigned char>(240));
        Levels levels{};
        levels[250] = 5;
        doccam::countLevels(pixels.data(), count, levels);
        EXPECT_EQ(levels[250], count > 10 ? 6 : 5);
        EXPECT_EQ(std::accumulate(levels.begin(), levels.end(), 0), count + 5);
    }
}

TEST(AddLevels, AddsThemOneByOne) {
    Levels levels{1, 2, 3};
    doccam::addLevels({10, 20, 0, 40}, levels);
    EXPECT_EQ(levels, (Levels{11, 22, 3, 40}));
}

TEST(OtsuLevel, EqualsOpenCvs) {
    cv::RNG random(12);
    for (int i = 0; i < 3000; ++i) {
        const cv::Mat row = heaps(random);
        ASSERT_EQ(doccam::otsuLevel(levelsOf(row)), librarysLevel(row)) << i;
    }
}

TEST(OtsuLevel, EqualsOpenCvsForTwoLevelsAnyDistanceApart) {
    for (int dark = 0; dark < 255; dark += 5) {
        for (int bright = dark + 1; bright < 256; bright += 3) {
            cv::Mat row(1, 999, CV_8UC1, cv::Scalar(dark));
            row.colRange(dark * 3, 999).setTo(bright);
            ASSERT_EQ(doccam::otsuLevel(levelsOf(row)), librarysLevel(row))
                << dark << ' ' << bright;
        }
    }
}

TEST(OtsuLevel, IsZeroForASingleLevel) {
    EXPECT_EQ(doccam::otsuLevel(levelsOf(cv::Mat(1, 50, CV_8UC1, cv::Scalar(128)))), 0);
}

} // namespace
