#include "host_program.h"

namespace {

using namespace doccam::test;
using testing::HasSubstr;
using testing::Not;

using Controls = HostProgramTest;
using Json = nlohmann::json;

TEST_F(Controls, AreShownWithTheirRanges) {
    const Outcome outcome = runWith(camera(), "controls");
    EXPECT_EQ(outcome.status, kDone) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("brightness  0  (-64 to 64, default 0)\n"));
    EXPECT_THAT(outcome.out, HasSubstr("gamma       100  (72 to 500, default 100)\n"));
}

TEST_F(Controls, AreSetEachByItsName) {
    const Json controls =
        runWith(camera(), "controls brightness=-5 gamma=200 contrast --json").json();
    EXPECT_EQ(controls[0], Json::parse(R"({"name": "brightness", "value": -5, "minimum": -64,
                                           "maximum": 64, "default": 0})"));
    EXPECT_EQ(controls[1]["value"], 200);
    EXPECT_EQ(controls[2]["value"], 32);
}

TEST_F(Controls, AreResetExceptThoseGivenAValue) {
    const Json controls =
        runWith(camera(), "controls hue=9 brightness=7 brightness --reset --json").json();
    EXPECT_EQ(controls[1]["value"], 7);
    EXPECT_EQ(controls[2]["value"], 0);
}

TEST_F(Controls, StayWithinTheirRange) {
    const Outcome outcome = runWith(camera(), "controls brightness=65");
    EXPECT_EQ(outcome.status, kUsage);
    EXPECT_THAT(outcome.err, isOneSentence());
    EXPECT_THAT(outcome.err, HasSubstr("from -64 to 64"));
}

TEST_F(Controls, ThatTheCameraLacksAreSkippedUnlessRequested) {
    const std::string without = camera(R"("controls": [{"name": "Hue", "remove": true}])");
    EXPECT_THAT(runWith(without, "controls").out, Not(HasSubstr("hue")));
    EXPECT_EQ(runWith(without, "controls hue").status, kNothingFound);
}

TEST_F(Controls, FocusIsRequestedFromACameraThatHasIt) {
    EXPECT_EQ(runWith(camera(), "focus").status, kDone);
    EXPECT_EQ(runWith(camera(), "focus --switch").status, kDone);
}

TEST_F(Controls, RefusedFocusIsAFailure) {
    const Outcome outcome = runWith(
        camera(
            R"("faults": [{"fault": "call", "request": "VIDIOC_S_CTRL", "errno": "EIO", "onwards": true}])"),
        "focus");
    EXPECT_EQ(outcome.status, kCameraFailed);
    EXPECT_THAT(outcome.err, isOneSentence());
}

} // namespace
