// The desk around a page, filled with paper.
#include "lit_pages.h"
#include "page/look.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <vector>

namespace doccam::page {
namespace {

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

} // namespace
} // namespace doccam::page
