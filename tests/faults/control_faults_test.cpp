// Each request of the picture controls fails.
#include "faults/sweep_fixture.h"

#include <doccam/doccam.hpp>

#include <cerrno>
#include <functional>
#include <ostream>

namespace doccam::test {
namespace {

struct Control {
    const char* name;
    const char* request;
    int at;
    int code;
    std::function<int()> call;
};

void PrintTo(const Control& control, std::ostream* out) {
    *out << control.request;
}

int read() {
    int ignored = 0;
    return GetVideoCtlParam(0, &ignored, &ignored, &ignored, &ignored);
}

int write() {
    return SetVideoCtlParam(0, 1);
}

int reset() {
    return SetVideoCtlDefaultParam(0);
}

// Without the default, the failure value goes to the control used before.
int readAndReset() {
    read();
    return reset();
}

class ControlFaults : public SweepTest, public testing::WithParamInterface<Control> {};

TEST_P(ControlFaults, GiveTheirCodeAndLeaveTheStreamGoingOn) {
    const Control& control = GetParam();
    ASSERT_EQ(open(), 0);
    for (const int error : requestErrors({ERANGE, EACCES, EILSEQ})) {
        SCOPED_TRACE(described(control.request, error, control.at));
        virtualcam::clearCalls();
        addCallFault(control.request, error, control.at);
        EXPECT_EQ(control.call(), control.code);
        expectStruck(control.request, error);
        waitForFrames(framesSeen() + 1);
        virtualcam::clearFaults(earlier_);
    }
    closeCamera();
    expectCleanEnd();
}

INSTANTIATE_TEST_SUITE_P(
    EachRequest, ControlFaults,
    testing::Values(Control{"ReadQuery", "VIDIOC_QUERYCTRL", 1, -1, read},
                    Control{"ReadValue", "VIDIOC_G_CTRL", 1, -2, read},
                    Control{"Write", "VIDIOC_S_CTRL", 1, -1, write},
                    Control{"ResetQuery", "VIDIOC_QUERYCTRL", 2, -10001, readAndReset},
                    Control{"ResetValue", "VIDIOC_G_CTRL", 1, -10002, reset},
                    Control{"ResetWrite", "VIDIOC_S_CTRL", 1, -10003, reset},
                    Control{"FocusQuery", "VIDIOC_QUERYCTRL", 1, 0, ManualFocus},
                    Control{"FocusValue", "VIDIOC_G_CTRL", 1, -2, ManualFocus},
                    Control{"FocusWrite", "VIDIOC_S_CTRL", 1, -3, ManualFocus},
                    Control{"RefocusQuery", "VIDIOC_QUERYCTRL", 1, 0, ManualFocusEx},
                    Control{"RefocusValue", "VIDIOC_G_CTRL", 1, -2, ManualFocusEx},
                    Control{"RefocusOff", "VIDIOC_S_CTRL", 1, -3, ManualFocusEx},
                    Control{"RefocusOn", "VIDIOC_S_CTRL", 2, -4, ManualFocusEx}),
    [](const auto& control) { return std::string(control.param.name); });

} // namespace
} // namespace doccam::test
