// Sheets made upright: their proportions, their pixels, their limits.
#include "drawn_sheets.h"
#include "page/aspect_ratio.h"
#include "page/perspective_warp.h"
#include "page/quadrilateral.h"
#include "page/rectify.h"
#include "page/warp_kernels.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace doccam::test {
namespace {

using page::Corners;

using RunsKernel = void (*)(const page::WarpRuns&, unsigned char*);
using Pixels = std::vector<unsigned char>;

constexpr std::size_t kGuards = 8; // which a kernel must not write
constexpr unsigned char kGuard = 77;

Pixels plainRuns(const page::WarpRuns& runs, int channels) {
    Pixels pixels;
    for (int i = 0; i < runs.count * page::kWarpRun; ++i) {
        const page::WarpPlace& start = runs.places[i / page::kWarpRun];
        const page::WarpPlace step = page::stepBetween(start, (&start)[1]);
        const std::int64_t x = start.x + i % page::kWarpRun * step.x;
        const std::int64_t y = start.y + i % page::kWarpRun * step.y;
        const unsigned char* from = runs.picture + (y >> page::kPlaceBits) * runs.stride +
                                    (x >> page::kPlaceBits) * channels;
        for (const unsigned char* const end = from + channels; from < end; ++from) {
            pixels.push_back(page::blended(from[0], from[channels], from[runs.stride],
                                           from[runs.stride + channels], page::weightOf(x),
                                           page::weightOf(y)));
        }
    }
    pixels.resize(pixels.size() + kGuards, kGuard);
    return pixels;
}

Pixels runsBy(RunsKernel kernel, const page::WarpRuns& runs, int channels) {
    const auto count = static_cast<std::size_t>(runs.count * page::kWarpRun * channels);
    Pixels pixels(count + kGuards, kGuard);
    kernel(runs, pixels.data());
    return pixels;
}

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

TEST(WarpKernels, GiveThePlainFormulaWithEveryInstructionSet) {
    cv::Mat picture(200, 300, CV_8UC3);
    cv::randu(picture, 0, 256);
    cv::RNG random(5);
    for (int trial = 0; trial < 200; ++trial) {
        std::vector<page::WarpPlace> places(static_cast<std::size_t>(random.uniform(2, 9)));
        for (page::WarpPlace& place : places) {
            place = {random.uniform(0, 298 << page::kPlaceBits),
                     random.uniform(0, 199 << page::kPlaceBits)};
        }
        const page::WarpRuns runs{picture.data, static_cast<std::ptrdiff_t>(picture.step[0]),
                                  places.data(), static_cast<int>(places.size()) - 1};
        for (const page::WarpKernels& kernels : page::allWarpKernels()) {
            EXPECT_EQ(runsBy(kernels.colourRuns, runs, 3), plainRuns(runs, 3))
                << kernels.instructionSet;
            EXPECT_EQ(runsBy(kernels.greyRuns, runs, 1), plainRuns(runs, 1))
                << kernels.instructionSet;
        }
    }
}

TEST(PerspectiveWarp, InterpolatesEverywhereUpToTheBorder) {
    cv::Mat picture(60, 100, CV_8UC3);
    for (int x = 0; x < picture.cols; ++x) {
        picture.col(x).setTo(cv::Scalar::all(2 * x));
    }
    const cv::Mat shifted = page::warped(picture, {1, 0, 0.5, 0, 1, 0, 0, 0, 1}, {99, 60});
    for (int x = 0; x < shifted.cols; ++x) {
        EXPECT_EQ(shifted.at<cv::Vec3b>(30, x)[0], 2 * x + 1) << x;
    }
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
