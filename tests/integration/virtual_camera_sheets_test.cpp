// Sheets that the virtual camera changes by itself.
#include "picture/picture_source.h"
#include "scenario.h"
#include "scene/scene.h"
#include "scene/sheet_change.h"

#include <gmock/gmock.h>
#include <opencv2/core.hpp>

namespace {

using namespace doccam::virtualcam;

SceneSettings changing() {
    SceneSettings scene;
    scene.sheetFrames = 10;
    scene.changeFrames = 9;
    return scene;
}

bool isEmptyDesk(const SceneSettings& scene) {
    const cv::Mat picture = drawScene(scene, {640, 480});
    double brightest = 0;
    cv::minMaxLoc(picture.reshape(1), nullptr, &brightest);
    return brightest < 60;
}

TEST(SheetChange, KeepsASheetForEverByDefault) {
    EXPECT_EQ(sceneAt({}, 1000000), SceneSettings());
}

TEST(SheetChange, LetsEachSheetLieStillForItsFrames) {
    const SceneSettings scene = changing();
    for (const std::uint32_t first : {0U, 19U, 38U}) {
        const SceneSettings rest = sceneAt(scene, first);
        EXPECT_EQ(rest.sheet, static_cast<int>(first / 19));
        EXPECT_EQ(sceneAt(scene, first + 9), rest);
        EXPECT_FALSE(sceneAt(scene, first + 10) == rest);
    }
}

TEST(SheetChange, PlacesEachSheetDifferentlyFromTheLast) {
    const SceneSettings scene = changing();
    for (std::uint32_t sheet = 0; sheet < 20; ++sheet) {
        const SceneSettings one = sceneAt(scene, sheet * 19);
        const SceneSettings next = sceneAt(scene, (sheet + 1) * 19);
        EXPECT_TRUE(one.angle != next.angle || one.centreX != next.centreX) << sheet;
    }
}

TEST(SheetChange, ShowsAnEmptyDeskBetweenTheSheets) {
    EXPECT_FALSE(isEmptyDesk(sceneAt(changing(), 10)));
    EXPECT_TRUE(isEmptyDesk(sceneAt(changing(), 14)));
    EXPECT_FALSE(isEmptyDesk(sceneAt(changing(), 18)));
}

TEST(SheetChange, TakesTheOldSheetAwayAndBringsTheNext) {
    EXPECT_EQ(sceneAt(changing(), 12).sheet, 0);
    EXPECT_EQ(sceneAt(changing(), 16).sheet, 1);
}

TEST(SheetChange, NeedsNoFramesForTheChange) {
    SceneSettings scene = changing();
    scene.changeFrames = 0;
    EXPECT_EQ(sceneAt(scene, 9).sheet, 0);
    EXPECT_EQ(sceneAt(scene, 10).sheet, 1);
}

TEST(SheetChange, IncrementsTheFirstNumberOfAText) {
    EXPECT_EQ(countedUp("DOC-0042-2026", 1), "DOC-0043-2026");
    EXPECT_EQ(countedUp("sheet/0099", 1), "sheet/0100");
    EXPECT_EQ(countedUp("9", 1), "10");
    EXPECT_EQ(countedUp("no number", 5), "no number");
    EXPECT_EQ(countedUp("4006381333931", 1), "4006381333931");
}

TEST(SheetChange, IsReadFromAScenario) {
    const SceneSettings scene =
        parseScenario(
            R"({"cameras": [{"scene": {"sheet": 2, "sheetFrames": 5, "changeFrames": 7}}]})")
            .at(0)
            .scene;
    EXPECT_EQ(scene.sheet, 2);
    EXPECT_EQ(scene.sheetFrames, 5);
    EXPECT_EQ(scene.changeFrames, 7);
    EXPECT_THROW(parseScenario(R"({"cameras": [{"scene": {"sheetFrames": -1}}]})"),
                 std::runtime_error);
    EXPECT_THROW(parseScenario(R"({"cameras": [{"scene": {"repeatFrames": -1}}]})"),
                 std::runtime_error);
}

TEST(RepeatedFrames, AreDrawnOnce) {
    SceneSettings scene = changing();
    scene.repeatFrames = 30;
    scene.unrest.flicker = 0.1;
    PictureSource source("", scene);
    const auto frame = [&source](std::uint32_t number) {
        return source.frame(kMjpeg, {160, 120}, number);
    };
    const FrameBytes first = frame(3);
    for (std::uint32_t number = 0; number < 30; ++number) {
        frame(number);
    }
    EXPECT_EQ(frame(33), first);
    EXPECT_NE(frame(34), first);
    scene.sheet = 7;
    source.setScene(scene);
    EXPECT_NE(*frame(33), *first);
}

} // namespace
