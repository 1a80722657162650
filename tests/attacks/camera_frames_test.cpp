// Frames that announce more than the session has asked for.
#include "measured_run.h"

#include <gmock/gmock.h>

namespace {

using namespace doccam::test;
using testing::ElementsAre;
using testing::Le;

// Decoding such a frame would take two gigabytes.
TEST(CameraFrames, ThatAnnounceAHugePictureCostNoMoreThanOthers) {
    constexpr long kSession = 250;
    const MeasuredRun work;
    work.write("scenario.json", R"({"cameras": [{"intervalMs": 20, "scene": {"noise": 0},
        "formats": [{"fourcc": "MJPG", "sizes": [[640, 480]]}],
        "faults": [{"fault": "wrongSize", "at": 2, "value": 15000},
                   {"fault": "wrongSize", "at": 5, "value": 15000}]}]})");
    const Cost cost =
        work.runProgram({DOCCAM_VIRTUALCAM_LAUNCHER, "--scenario", "scenario.json", "--",
                         DOCCAM_PROGRAM, "capture", "a.jpg", "b.jpg", "c.jpg", "d.jpg"});
    EXPECT_EQ(cost.status, kDone) << cost.err;
    EXPECT_THAT(cost.megabytes, Le(kSession)) << cost.processorSeconds;
    EXPECT_THAT(work.files(), ElementsAre("a.jpg", "b.jpg", "c.jpg", "d.jpg", "scenario.json"));
}

} // namespace
