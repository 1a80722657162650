// Cameras from a scenario file.
#include "scenario.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <linux/videodev2.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

namespace {

using namespace doccam::virtualcam;
using testing::HasSubstr;

std::string errorFrom(const std::string& text) {
    try {
        parseScenario(text);
    } catch (const std::exception& error) {
        return error.what();
    }
    return "";
}

TEST(Scenario, DefaultsToAUsualDocumentCamera) {
    const std::vector<CameraDescription> cameras = parseScenario(R"({"cameras": [{}]})");
    ASSERT_EQ(cameras.size(), 1U);
    EXPECT_EQ(cameras[0].vendor, "0c45");
    EXPECT_EQ(cameras[0].formats.size(), 2U);
    EXPECT_FALSE(cameras[0].intervalMs);
}

TEST(Scenario, ReadsFormatsIntervalAndScene) {
    const CameraDescription camera = parseScenario(R"({"cameras": [{
        "vendor": "1778", "card": "Card", "intervalMs": 0, "picture": null,
        "formats": [{"fourcc": "YUYV", "sizes": [[640, 480], [800, 600]], "rates": [5]},
                    {"fourcc": "MJPG", "stepwise":
                        {"from": [160, 120], "to": [640, 480], "step": [16, 16]}}],
        "scene": {"angle": -12, "noise": 0}}]})")[0];
    EXPECT_EQ(camera.vendor, "1778");
    EXPECT_EQ(camera.intervalMs, 0);
    EXPECT_EQ(camera.formats[0].sizes[1], (Size{800, 600}));
    EXPECT_EQ(camera.formats[0].frameRates[0], 5);
    EXPECT_EQ(camera.formats[1].range->largest, (Size{640, 480}));
    EXPECT_EQ(camera.scene.angle, -12);
}

TEST(Scenario, ReadsDeskViewAndLight) {
    const SceneSettings scene = parseScenario(R"({"cameras": [{"scene": {
        "desk": "cloth", "view": {"tilt": 20, "focal": 0.9}, "light": {"handShadow": 0.5}}}]})")[0]
                                    .scene;
    EXPECT_EQ(scene.desk, "cloth");
    EXPECT_EQ(scene.view.tilt, 20);
    EXPECT_EQ(scene.view.focal, 0.9);
    EXPECT_EQ(scene.light.handShadow, 0.5);
    EXPECT_EQ(parseScenario(R"({"cameras": [{"scene": {}}]})")[0].scene, SceneSettings{});
}

TEST(Scenario, RefusesImpossibleDesksViewsAndLights) {
    const auto errorOf = [](const std::string& scene) {
        return errorFrom(R"({"cameras": [{"scene": )" + scene + "}]}");
    };
    EXPECT_THAT(errorOf(R"({"desk": "sea"})"), HasSubstr("unknown desk \"sea\""));
    EXPECT_THAT(errorOf(R"({"view": {"tilt": 26}})"), HasSubstr("impossible tilt"));
    EXPECT_THAT(errorOf(R"({"light": {"gradient": 0}})"), HasSubstr("impossible gradient"));
    EXPECT_THAT(errorOf(R"({"desk": "wood", "sheetHeight": 0})"), HasSubstr("sheetHeight"));
    EXPECT_THAT(errorOf(R"({"light": {"lamp": 1}})"), HasSubstr("unknown field"));
}

TEST(Scenario, ChangesAndRemovesControls) {
    const CameraDescription camera = parseScenario(R"({"cameras": [{"controls": [
        {"name": "Brightness", "minimum": 0, "maximum": 255, "default": 128},
        {"name": "Zoom, Absolute", "remove": true}]}]})")[0];
    EXPECT_EQ(camera.controls.size(), documentCameraControls().size() - 1);
    const auto brightness = std::find_if(camera.controls.begin(), camera.controls.end(),
                                         [](const auto& c) { return c.name == "Brightness"; });
    EXPECT_EQ(brightness->maximum, 255);
    EXPECT_EQ(brightness->defaultValue, 128);
}

TEST(Scenario, ReadsFaults) {
    const CameraDescription camera = parseScenario(R"({"cameras": [{"faults": [
        {"fault": "call", "request": "VIDIOC_DQBUF", "at": 3, "errno": "EPROTO", "onwards": true},
        {"fault": "grant", "value": 2}]}]})")[0];
    ASSERT_EQ(camera.faults.size(), 2U);
    EXPECT_EQ(camera.faults[0].kind, FaultKind::kCall);
    EXPECT_EQ(camera.faults[0].at, 3);
    EXPECT_EQ(camera.faults[0].error, EPROTO);
    EXPECT_TRUE(camera.faults[0].onwards);
    EXPECT_EQ(camera.faults[1].kind, FaultKind::kGrant);
    EXPECT_EQ(camera.faults[1].value, 2);
}

TEST(Scenario, NamesWhatItDoesNotUnderstand) {
    EXPECT_THAT(errorFrom(R"({"cameras": [{"vendr": "1"}]})"), HasSubstr("vendr"));
    EXPECT_THAT(errorFrom(R"({"cameras": [{"faults": [{"fault": "fire"}]}]})"), HasSubstr("fire"));
    EXPECT_THAT(errorFrom(R"({"cameras": [{"faults": [
        {"fault": "call", "request": "QBUF", "errno": "EFUN"}]}]})"),
                HasSubstr("EFUN"));
    EXPECT_THAT(
        errorFrom(R"({"cameras": [{"formats": [{"fourcc": "MJPG", "sizes": [[641, 480]]}]}]})"),
        HasSubstr("641"));
    EXPECT_NE(errorFrom("{"), "");
}

TEST(Scenario, RefusesNumbersThatFitNoInt) {
    for (const char* number : {"1e67", "2147483648", "-1e10"}) {
        EXPECT_THROW(parseScenario(std::string(R"({"cameras": [{"intervalMs": )") + number + "}]}"),
                     std::runtime_error)
            << number;
    }
}

TEST(Scenario, NamesTheFileThatCannotBeRead) {
    EXPECT_THROW(readScenario("/nonexistent/scenario.json"), std::runtime_error);
}

TEST(Scenario, UnderstandsEveryExampleOfTheManual) {
    std::ifstream manual(DOCCAM_VIRTUALCAM_MANUAL);
    std::string line;
    std::ostringstream example;
    bool inside = false;
    int examples = 0;
    std::set<FaultKind> kinds;
    while (std::getline(manual, line)) {
        if (line == "```json") {
            inside = true;
            example.str("");
        } else if (line == "```" && inside) {
            inside = false;
            ++examples;
            const std::vector<CameraDescription> cameras = parseScenario(example.str());
            for (const Fault& fault : cameras.at(0).faults) {
                kinds.insert(fault.kind);
            }
        } else if (inside) {
            example << line << '\n';
        }
    }
    EXPECT_GE(examples, 2);
    EXPECT_EQ(kinds.size(), 10U) << "an example for each fault";
}

} // namespace
