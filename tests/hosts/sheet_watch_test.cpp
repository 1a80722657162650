// Which frames of drawn sheets are told as new sheets, and by which picture.
#include "scan/sharpness.h"
#include "scan/sheet_comparison.h"
#include "scan/sheet_watch.h"
#include "scene/scene.h"
#include "scene/unrest.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

namespace {

using doccam::host::SheetCorners;
using doccam::host::SheetView;
using doccam::host::SheetWatch;
using doccam::host::showSameSheet;
using doccam::host::Sight;
using doccam::host::Stillness;
using doccam::host::viewOf;
using doccam::virtualcam::SceneSettings;

const cv::Size kFrame(1280, 960);

cv::Mat frameOf(const SceneSettings& scene, int pattern = 0) {
    cv::Mat picture = drawScene(scene, kFrame);
    stir(picture, scene);
    doccam::virtualcam::addSensorNoise(picture, scene.noise, pattern);
    cv::cvtColor(picture, picture, cv::COLOR_BGR2RGB);
    return picture;
}

SheetView viewedAt(const SceneSettings& scene, const SceneSettings& place) {
    SheetCorners corners;
    const auto seen = sheetCorners(place, kFrame);
    std::copy(seen.begin(), seen.end(), corners.begin());
    return viewOf(frameOf(scene, 1), corners);
}

SheetView viewed(const SceneSettings& scene) {
    return viewedAt(scene, scene);
}

SceneSettings formSheet(int number) {
    SceneSettings scene;
    scene.sheet = number;
    scene.unrest.form = true;
    return scene;
}

TEST(SameSheet, IsTheOneThatWasNudged) {
    SceneSettings nudged;
    nudged.angle += 2;
    nudged.centreX += 0.02;
    nudged.centreY -= 0.01;
    EXPECT_TRUE(showSameSheet(viewed({}), viewed(nudged)));
}

TEST(SameSheet, MayBeFoundAPixelOff) {
    SceneSettings found;
    found.centreX += 1.0 / kFrame.width;
    found.centreY -= 1.0 / kFrame.height;
    EXPECT_TRUE(showSameSheet(viewed({}), viewedAt({}, found)));
}

TEST(SameSheet, MayLieInOtherLight) {
    SceneSettings even;
    even.light.gradient = 1.01;
    SceneSettings other;
    other.unrest.bands = 0.15;
    other.unrest.flicker = 0.3;
    other.light.gradient = 2;
    EXPECT_TRUE(showSameSheet(viewed(even), viewed(other)));
}

TEST(SameSheet, MayHaveAHandOnIt) {
    SceneSettings held;
    held.unrest.hand = "stays";
    EXPECT_TRUE(showSameSheet(viewed({}), viewed(held)));
    EXPECT_TRUE(showSameSheet(viewed(held), viewed({})));
}

TEST(SameSheet, IsNoneThatDiffersInOneLine) {
    EXPECT_TRUE(showSameSheet(viewed(formSheet(1)), viewed(formSheet(1))));
    EXPECT_FALSE(showSameSheet(viewed(formSheet(1)), viewed(formSheet(2))));
    EXPECT_FALSE(showSameSheet(viewed(formSheet(3)), viewed(formSheet(4))));
}

TEST(SameSheet, IsNoneThatLacksTheLine) {
    SceneSettings without;
    EXPECT_FALSE(showSameSheet(viewed(formSheet(0)), viewed(without)));
}

TEST(Sharpness, IsLargerForTheSharperFrameWhateverTheLight) {
    const cv::Mat sharp = frameOf({});
    cv::Mat blurred;
    cv::GaussianBlur(sharp, blurred, {}, 1.5);
    EXPECT_GT(doccam::host::sharpnessOf(sharp), 1.5 * doccam::host::sharpnessOf(blurred));
    EXPECT_GT(doccam::host::sharpnessOf(sharp * 0.7), doccam::host::sharpnessOf(blurred));
}

class Watched : public testing::Test {
  protected:
    // Shows a scene for so many frames. Returns what was seen but nothing.
    std::vector<Sight> show(const cv::Mat& frame, int frames = 2 * Stillness::kCalmFrames) {
        std::vector<Sight> seen;
        for (int i = 0; i < frames; ++i) {
            if (const Sight sight = watch_.see({frame, {}}); sight != Sight::kNothing) {
                seen.push_back(sight);
            }
        }
        return seen;
    }

    SheetWatch watch_{false};
};

const std::vector<Sight> kOneSheet{Sight::kNewSheet};
const std::vector<Sight> kNone{};

TEST_F(Watched, SeesASheetOnce) {
    EXPECT_EQ(show(frameOf({}), 5 * Stillness::kCalmFrames), kOneSheet);
}

TEST_F(Watched, SeesASheetAgainUnlessItWasTaken) {
    const cv::Mat frame = frameOf({});
    EXPECT_EQ(show(frame), kOneSheet);
    show(cv::Mat(kFrame, CV_8UC3, cv::Scalar::all(40)));
    EXPECT_EQ(show(frame), kOneSheet);
    watch_.noteTaken();
    show(cv::Mat(kFrame, CV_8UC3, cv::Scalar::all(40)));
    EXPECT_EQ(show(frame), kNone);
}

TEST_F(Watched, SeesNothingInAnEmptyDesk) {
    EXPECT_EQ(show(cv::Mat(kFrame, CV_8UC3, cv::Scalar::all(40))), kNone);
}

TEST_F(Watched, SaysThatAPictureIsDark) {
    EXPECT_EQ(show(cv::Mat(kFrame, CV_8UC3, cv::Scalar::all(4))), std::vector{Sight::kDark});
}

TEST_F(Watched, SaysThatThereIsNoSheet) {
    cv::Mat coin(kFrame, CV_8UC3, cv::Scalar::all(40));
    cv::circle(coin, {640, 480}, 40, cv::Scalar::all(255), -1);
    EXPECT_EQ(show(coin), std::vector{Sight::kNoSheet});
}

TEST_F(Watched, TakesTheSharpestOfTheFramesAtRest) {
    const cv::Mat sharp = frameOf({});
    cv::Mat blurred;
    cv::GaussianBlur(sharp, blurred, {}, 0.4);
    show(blurred, Stillness::kCalmFrames / 2);
    show(sharp, 1);
    EXPECT_EQ(show(blurred), kOneSheet);
    cv::Mat expected;
    cv::cvtColor(sharp, expected, cv::COLOR_RGB2BGR);
    EXPECT_EQ(cv::norm(watch_.picture(), expected, cv::NORM_INF), 0);
}

TEST_F(Watched, ComplainsAboutUnrestNowAndThenAndLessAndLess) {
    std::vector<int> complaints;
    for (int frame = 0; frame < 1200; ++frame) {
        cv::Mat picture(240, 320, CV_8UC3, cv::Scalar::all(40));
        cv::circle(picture, {3 * (frame % 100), 120}, 50, cv::Scalar::all(220), -1);
        if (watch_.see({picture, {}}) == Sight::kMoving) {
            complaints.push_back(frame);
        }
    }
    ASSERT_EQ(complaints.size(), 3U);
    EXPECT_GT(complaints[2] - complaints[1], 3 * (complaints[1] - complaints[0]) / 2);
}

} // namespace
