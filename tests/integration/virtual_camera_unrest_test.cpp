// Pictures of the virtual camera that never rest: lamps, hands, nudged sheets, feeders, forms.
#include "picture/picture_source.h"
#include "scenario.h"
#include "scene/scene.h"
#include "scene/sheet_change.h"
#include "scene/unrest.h"

#include <gmock/gmock.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace {

using namespace doccam::virtualcam;

const cv::Size kPicture(640, 480);

cv::Mat pictureOf(const SceneSettings& scene) {
    cv::Mat picture = drawScene(scene, kPicture);
    stir(picture, scene);
    return picture;
}

double difference(const SceneSettings& one, const SceneSettings& other) {
    return cv::norm(pictureOf(one), pictureOf(other), cv::NORM_INF);
}

TEST(Unrest, ChangesNoFrameUnlessItIsAskedFor) {
    const SceneSettings scene;
    EXPECT_FALSE(changesEachFrame(scene));
    EXPECT_EQ(sceneAt(scene, 7), scene);
    EXPECT_EQ(difference(scene, scene), 0);
}

TEST(Unrest, DarkensBandsThatMoveOn) {
    SceneSettings scene;
    scene.unrest.bands = 0.06;
    EXPECT_TRUE(changesEachFrame(scene));
    cv::Mat ratio;
    cv::divide(pictureOf(sceneAt(scene, 3)), drawScene(scene, kPicture), ratio, 200, CV_8U);
    double darkest = 0;
    double brightest = 0;
    cv::minMaxLoc(ratio.reshape(1).col(3 * 320), &darkest, &brightest);
    EXPECT_NEAR(brightest, 200, 3);
    EXPECT_LT(darkest, 197);
    EXPECT_GT(difference(sceneAt(scene, 3), sceneAt(scene, 4)), 3);
}

TEST(Unrest, LetsTheWholePictureFlicker) {
    SceneSettings scene;
    scene.unrest.flicker = 0.2;
    EXPECT_GT(difference(sceneAt(scene, 0), sceneAt(scene, 3)), 10);
    EXPECT_EQ(difference(sceneAt(scene, 0), sceneAt(scene, 7)), 0);
}

TEST(Unrest, LetsAHandStayOrVisit) {
    SceneSettings scene;
    scene.unrest.hand = "stays";
    EXPECT_GT(difference(sceneAt(scene, 0), SceneSettings()), 50);
    scene.unrest.hand = "visits";
    EXPECT_EQ(difference(sceneAt(scene, 0), SceneSettings()), 0);
    EXPECT_GT(difference(sceneAt(scene, 10), SceneSettings()), 50);
    EXPECT_EQ(difference(sceneAt(scene, 30), SceneSettings()), 0);
}

TEST(Unrest, NudgesEachSheetHalfWayThroughItsRest) {
    SceneSettings scene;
    scene.sheetFrames = 40;
    scene.unrest.nudge = 5;
    EXPECT_EQ(sceneAt(scene, 19), sceneAt(scene, 0));
    EXPECT_NEAR((sceneAt(scene, 30).centreY - sceneAt(scene, 0).centreY) * 297 / scene.sheetHeight,
                5, 1e-9);
    EXPECT_EQ(sceneAt(scene, 39), sceneAt(scene, 30));
}

TEST(Unrest, PushesSheetsALittleEachFrameThroughAFeeder) {
    SceneSettings scene;
    scene.sheetFrames = 1;
    scene.changeFrames = 90;
    scene.unrest.feeder = true;
    for (std::uint32_t frame = 62; frame < 90; ++frame) {
        EXPECT_GT(sceneAt(scene, frame + 1).centreX, sceneAt(scene, frame).centreX);
    }
}

TEST(Unrest, MakesFormsThatDifferInOneLine) {
    SceneSettings scene;
    scene.unrest.form = true;
    SceneSettings next = scene;
    next.sheet = 1;
    cv::Mat change;
    cv::absdiff(flatSheet(scene), flatSheet(next), change);
    std::vector<cv::Point> differing;
    cv::findNonZero(change.reshape(1), differing);
    const cv::Rect line = cv::boundingRect(differing);
    EXPECT_GT(line.height, 10);
    EXPECT_LT(line.height, 40) << "10 points at 200 dots per inch";
}

TEST(Unrest, ReachesTheFramesThatTheCameraSends) {
    SceneSettings scene;
    scene.noise = 0;
    scene.unrest.bands = 0.1;
    PictureSource source("", scene);
    EXPECT_NE(*source.frame(kYuyv, {64, 48}, 1), *source.frame(kYuyv, {64, 48}, 2));
}

TEST(Unrest, IsReadFromAScenario) {
    const SceneSettings scene = parseScenario(R"({"cameras": [{"scene": {"unrest":
        {"bands": 0.06, "hand": "visits", "nudge": 4, "feeder": true, "form": true}}}]})")
                                    .at(0)
                                    .scene;
    EXPECT_EQ(scene.unrest.bands, 0.06);
    EXPECT_EQ(scene.unrest.hand, "visits");
    EXPECT_EQ(scene.unrest.nudge, 4);
    EXPECT_TRUE(scene.unrest.feeder);
    EXPECT_TRUE(scene.unrest.form);
    for (const char* unrest : {R"({"hand": "waves"})", R"({"bands": 2})", R"({"storm": 1})"}) {
        EXPECT_THROW(
            parseScenario(std::string(R"({"cameras": [{"scene": {"unrest": )") + unrest + "}}]}"),
            std::exception)
            << unrest;
    }
}

} // namespace
