// Each request of the picture controls fails.
#include "faults/documented_errors.h"
#include "faults/sweep_fixture.h"

#include <doccam/doccam.hpp>

#include <ostream>

namespace doccam::test {
namespace {

struct Control {
    const char* name;
    const char* request;
    int at;
    int code;
    int writes; // requested of the camera, including the failing one
    int (*call)();
};

void PrintTo(const Control& control, std::ostream* out) {
    *out << control.name;
}

int read() {
    constexpr int kUntouched = -31337;
    int outputs[] = {kUntouched, kUntouched, kUntouched, kUntouched};
    const int code = GetVideoCtlParam(0, &outputs[0], &outputs[1], &outputs[2], &outputs[3]);
    for (const int output : outputs) {
        EXPECT_EQ(output == kUntouched, code != 0);
    }
    return code;
}

int write() {
    return SetVideoCtlParam(0, 1);
}

int reset() {
    return SetVideoCtlDefaultParam(0);
}

// Without the default, the failure value goes to the control used before.
int readAndReset() {
    EXPECT_EQ(read(), 0);
    return reset();
}

class ControlFaults : public SweepTest, public testing::WithParamInterface<Control> {};

TEST_P(ControlFaults, ReturnTheirCodeAndKeepTheStreamRunning) {
    const Control& control = GetParam();
    int round = 0;
    for (const int error : kControlErrors) {
        const CallFault fault{control.request, error, control.at};
        SCOPED_TRACE(described(fault));
        watchFrames();
        ASSERT_EQ(open(round++ % 2), 0);
        inject(fault);
        EXPECT_EQ(control.call(), control.code);
        expectStruck(fault);
        EXPECT_EQ(virtualcam::callCount("VIDIOC_S_CTRL"), control.writes);
        EXPECT_TRUE(waitForFrames(framesSeen() + 1));
        EXPECT_EQ(closeCamera(), 0);
        expectHeld(0, 0);
        expectHealthySession(kMjpegFormat);
        expectHealthySession(kYuyvFormat);
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachRequest, ControlFaults,
    testing::Values(Control{"ReadQuery", "VIDIOC_QUERYCTRL", 1, -1, 0, read},
                    Control{"ReadValue", "VIDIOC_G_CTRL", 1, -2, 0, read},
                    Control{"Write", "VIDIOC_S_CTRL", 1, -1, 1, write},
                    Control{"ResetQuery", "VIDIOC_QUERYCTRL", 2, -10001, 1, readAndReset},
                    Control{"ResetValue", "VIDIOC_G_CTRL", 1, -10002, 0, reset},
                    Control{"ResetWrite", "VIDIOC_S_CTRL", 1, -10003, 1, reset},
                    Control{"FocusQuery", "VIDIOC_QUERYCTRL", 1, 0, 0, ManualFocus},
                    Control{"FocusValue", "VIDIOC_G_CTRL", 1, -2, 0, ManualFocus},
                    Control{"FocusWrite", "VIDIOC_S_CTRL", 1, -3, 1, ManualFocus},
                    Control{"RefocusQuery", "VIDIOC_QUERYCTRL", 1, 0, 0, ManualFocusEx},
                    Control{"RefocusValue", "VIDIOC_G_CTRL", 1, -2, 0, ManualFocusEx},
                    Control{"RefocusOff", "VIDIOC_S_CTRL", 1, -3, 1, ManualFocusEx},
                    Control{"RefocusOn", "VIDIOC_S_CTRL", 2, -4, 2, ManualFocusEx}),
    [](const auto& control) { return std::string(control.param.name); });

} // namespace
} // namespace doccam::test
