// Sheets made upright: their proportions, their pixels, their limits.
#include "drawn_sheets.h"
#include "page/aspect_ratio.h"
#include "page/perspective_warp.h"
#include "page/quadrilateral.h"
#include "page/rectify.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include <cmath>

namespace doccam::test {
namespace {

using page::Corners;

TEST(AspectRatio, IsThatOfTheSheetInViewsThatShowIt) {
    for (const double ratio : {0.5, 0.707, 0.773, 1.0, 1.414, 1.9}) {
        for (const double focal : {960.0, 1300.0, 1800.0}) {
            const Camera camera{.focal = focal, .tilt = 20, .pan = 14, .turn = 11, .distance = 2.2};
            EXPECT_NEAR(page::aspectRatio(seenCorners(camera, ratio), camera.picture) / ratio, 1,
                        0.01)
                << ratio << " " << focal;
        }
    }
}

TEST(AspectRatio, IsThatOfAFormatWhereTheViewLeavesItOpen) {
    for (const double ratio : {0.7071, 1.4142, 0.7727}) {
        for (const double tilt : {0.0, 8.0, 16.0}) {
            const Camera camera{.focal = 1200, .tilt = tilt, .distance = 2};
            EXPECT_NEAR(page::aspectRatio(seenCorners(camera, ratio), camera.picture) / ratio, 1,
                        0.01)
                << ratio << " " << tilt;
        }
    }
}

TEST(PerspectiveWarp, GivesThePixelsOfOpenCvsWithinItsRounding) {
    cv::Mat picture(300, 400, CV_8UC3);
    cv::randu(picture, 0, 256);
    cv::GaussianBlur(picture, picture, {7, 7}, 2);
    const cv::Matx33d map(0.8, 0.1, 30, -0.05, 0.7, 40, 1e-4, -2e-4, 1);
    const cv::Mat ours = page::warped(picture, map, {350, 330});
    cv::Mat theirs;
    cv::warpPerspective(picture, theirs, map, ours.size(), cv::INTER_LINEAR | cv::WARP_INVERSE_MAP,
                        cv::BORDER_CONSTANT, cv::Scalar::all(255));
    const cv::Rect inner(5, 5, 340, 320);
    EXPECT_LE(cv::norm(ours(inner), theirs(inner), cv::NORM_INF), 6);
    EXPECT_LE(cv::norm(ours(inner), theirs(inner), cv::NORM_L1) / (3.0 * inner.area()), 0.6);
}

TEST(PerspectiveWarp, CopiesPixelsInPlaceAndIsWhiteOutside) {
    cv::Mat picture(40, 50, CV_8UC1);
    cv::randu(picture, 0, 200);
    const cv::Mat same = page::warped(picture, cv::Matx33d::eye(), picture.size());
    EXPECT_EQ(cv::norm(same, picture, cv::NORM_INF), 0);
    const cv::Mat shifted = page::warped(picture, {1, 0, -10, 0, 1, 0, 0, 0, 1}, picture.size());
    EXPECT_EQ(cv::countNonZero(shifted.colRange(0, 10) != 255), 0);
    EXPECT_EQ(cv::norm(shifted.colRange(10, 50), picture.colRange(0, 40), cv::NORM_INF), 0);
}

TEST(Rectify, ShowsTheSheetAloneAndNoMorePixelsThanThePicture) {
    const Camera camera{.tilt = 17, .pan = 10, .turn = 8};
    const Corners corners = seenCorners(camera, 0.707);
    const cv::Mat picture = drawnSheet(camera.picture, corners, {240, 240, 240}, {20, 40, 60});
    const cv::Mat sheet = page::rectify(picture, corners);
    EXPECT_NEAR(static_cast<double>(sheet.cols) / sheet.rows, 0.707, 0.01);
    EXPECT_LE(static_cast<double>(sheet.total()), page::areaOf(corners) + 1);
    const cv::Mat inside = sheet(cv::Rect(2, 2, sheet.cols - 4, sheet.rows - 4));
    EXPECT_EQ(cv::norm(inside, cv::Mat(inside.size(), CV_8UC3, cv::Scalar::all(240)), cv::NORM_INF),
              0);
}

} // namespace
} // namespace doccam::test
