// Sizes of sheets on a desk of known scale.
#include "documents/paper/desk.h"
#include "documents/paper/desk_measuring.h"
#include "host/failure.h"
#include "scene/views/camera_view.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <vector>

namespace {

using namespace doccam::host;
using doccam::virtualcam::CameraView;
using doccam::virtualcam::deskToPicture;
using doccam::virtualcam::project;
using testing::HasSubstr;

const cv::Size kFrame(1280, 960);
constexpr Millimetres kA4{210, 297};

// The corners of a sheet whose centre is there, in millimetres.
FrameCorners seen(const CameraView& view, Millimetres paper, cv::Point2d centre, double degrees,
                  cv::Size frame = kFrame) {
    const double angle = degrees * CV_PI / 180;
    const cv::Point2d across(std::cos(angle) * paper.width / 2, std::sin(angle) * paper.width / 2);
    const cv::Point2d down(-std::sin(angle) * paper.height / 2, std::cos(angle) * paper.height / 2);
    return project(deskToPicture(view, frame), {centre - across - down, centre + across - down,
                                                centre + across + down, centre - across + down});
}

CameraView tilted(double degrees) {
    return {.tilt = degrees, .tiltDirection = 70, .distance = 600};
}

Desk deskOf(const CameraView& view) {
    return {kFrame, seen(view, kA4, {0, 0}, 4), kA4};
}

void expectFailure(const std::function<void()>& work, const char* text) {
    try {
        work();
        ADD_FAILURE() << "nothing failed for: " << text;
    } catch (const Failure& failure) {
        EXPECT_THAT(failure.what(), HasSubstr(text));
    }
}

TEST(Desk, GivesTheSizeOfAnySheetWhereverItLies) {
    for (const double tilt : {0.0, 5.0, 15.0, 25.0}) {
        const CameraView view = tilted(tilt);
        const Desk desk = deskOf(view);
        for (const double degrees : {0.0, 30.0, -50.0}) {
            const auto size = sizeOnDesk(desk, seen(view, {120, 80}, {60, -70}, degrees));
            ASSERT_TRUE(size);
            EXPECT_NEAR(size->width, 120, 0.05) << tilt;
            EXPECT_NEAR(size->height, 80, 0.05) << tilt;
        }
    }
}

TEST(Desk, HasNoSheetBeyondItsHorizon) {
    const CameraView view{.tilt = 80, .tiltDirection = 90, .distance = 600};
    const Desk desk{kFrame, seen(view, kA4, {0, 0}, 0), kA4};
    EXPECT_TRUE(sizeOnDesk(desk, desk.corners));
    EXPECT_FALSE(sizeOnDesk(desk, {{{0, 8000}, {100, 8000}, {100, 9000}, {0, 9000}}}));
}

TEST(Desk, GivesTheSizeOfTheViewOfAnUprightCameraOnly) {
    const auto upright = sizeOfView(deskOf(tilted(0)));
    ASSERT_TRUE(upright);
    EXPECT_NEAR(upright->width, 600 / 1.2, 0.5);
    EXPECT_NEAR(upright->height, 600 / 1.2 * 0.75, 0.5);
    EXPECT_FALSE(sizeOfView(deskOf(tilted(5))));
}

TEST(Desk, ServesOtherFramesOfTheSameProportions) {
    const CameraView view = tilted(15);
    const std::vector<Desk> desks{deskOf(view)};
    for (const cv::Size frame : {cv::Size(640, 480), cv::Size(3264, 2448)}) {
        const auto desk = deskFor(desks, frame);
        ASSERT_TRUE(desk);
        const auto size = sizeOnDesk(*desk, seen(view, kA4, {40, 30}, 60, frame));
        ASSERT_TRUE(size);
        EXPECT_NEAR(size->width, 210, 0.05);
        EXPECT_NEAR(size->height, 297, 0.05);
    }
    EXPECT_FALSE(deskFor(desks, {1280, 720}));
    EXPECT_FALSE(deskFor({}, kFrame));
}

TEST(Desk, OfTheFrameItselfComesFirst) {
    Desk own = deskOf(tilted(0));
    own.frame = {640, 480};
    const std::vector<Desk> desks{deskOf(tilted(0)), own};
    EXPECT_EQ(deskFor(desks, {640, 480}), own);
}

TEST(DeskMeasuring, AveragesTheSheetOfSeveralFrames) {
    const FrameCorners sheet = deskOf(tilted(10)).corners;
    FrameCorners left = sheet;
    FrameCorners right = sheet;
    for (std::size_t i = 0; i < 4; ++i) {
        left[i].x -= 0.5;
        right[i].x += 0.5;
    }
    // Of a sheet askew any corner may be the first.
    std::rotate(right.begin(), right.begin() + 1, right.end());
    const FrameCorners mean = meanSheet({left, std::nullopt, right}, kFrame);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(cv::norm(mean[i] - sheet[i]), 0, 1e-9);
    }
}

TEST(DeskMeasuring, RefusesFramesThatShowNoStillAndWholeSheet) {
    const FrameCorners sheet = deskOf(tilted(0)).corners;
    FrameCorners moved = sheet;
    FrameCorners cut = sheet;
    for (cv::Point2d& corner : moved) {
        corner.x += 30;
    }
    cut[2].y = kFrame.height + 4;
    expectFailure([&] { meanSheet({}, kFrame); }, "No sheet was found");
    expectFailure([&] { meanSheet({sheet, std::nullopt}, kFrame); }, "No sheet was found");
    expectFailure([&] { meanSheet({sheet, moved, sheet}, kFrame); }, "moved");
    expectFailure([&] { meanSheet({cut, cut}, kFrame); }, "cut off");
}

TEST(DeskMeasuring, TurnsThePaperLikeTheSheet) {
    EXPECT_EQ(turnedToFit(kA4, 0.71), kA4);
    EXPECT_EQ(turnedToFit(kA4, 1.43), (Millimetres{297, 210}));
    expectFailure([] { turnedToFit(kA4, 0.77); }, "a4 1 to 1.41");
    expectFailure([] { turnedToFit(kA4, 1.29); }, "1 to 1.29");
}

} // namespace
