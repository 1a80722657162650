#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>

#include <cstring>

namespace doccam::test {
namespace {

constexpr std::uint32_t kIds[] = {V4L2_CID_BRIGHTNESS, V4L2_CID_CONTRAST, V4L2_CID_SATURATION,
                                  V4L2_CID_HUE,        V4L2_CID_GAIN,     V4L2_CID_GAMMA};
constexpr int kMissing = 6; // selects the previously used control

class CameraControls : public SessionTest {
  protected:
    void SetUp() override { openSmall(kMjpegFormat); }

    int value(std::uint32_t id) const {
        return virtualcam::controlValue(earlier_, id).value_or(-1);
    }

    const virtualcam::ControlDescription& described(std::uint32_t id) const {
        static const auto controls = virtualcam::documentCameraControls();
        for (const auto& control : controls) {
            if (control.id == id) {
                return control;
            }
        }
        throw std::logic_error("no such control");
    }

    // This thread's waits during call, in milliseconds.
    template <typename Call>
    static std::vector<long> waitsOf(Call&& call) {
        virtualcam::clearSleeps();
        call();
        std::vector<long> waits;
        for (const virtualcam::Sleep& sleep : virtualcam::sleeps()) {
            if (sleep.thread == gettid()) {
                waits.push_back(sleep.microseconds / 1000);
            }
        }
        return waits;
    }

    static std::string complaint(const char* text, int error) {
        return std::string(text) + ": " + strerror(error) + "\n";
    }
};

using testing::ElementsAre;

TEST_F(CameraControls, AreReadWithTheirRange) {
    for (int selector = 0; selector < 6; ++selector) {
        const auto& control = described(kIds[selector]);
        int minimum = 0;
        int maximum = 0;
        int byDefault = 0;
        int current = 0;
        ASSERT_EQ(virtualcam::setControl(earlier_, control.id, control.minimum), 0);
        EXPECT_EQ(GetVideoCtlParam(selector, &minimum, &maximum, &byDefault, &current), 0);
        EXPECT_EQ(minimum, control.minimum);
        EXPECT_EQ(maximum, control.maximum);
        EXPECT_EQ(byDefault, control.defaultValue);
        EXPECT_EQ(current, control.minimum);
    }
}

TEST_F(CameraControls, AreReadBetweenTwoPauses) {
    EXPECT_THAT(waitsOf([] { GetVideoCtlParam(0, nullptr, nullptr, nullptr, nullptr); }),
                ElementsAre(50, 50));
    EXPECT_THAT(waitsOf([] { SetVideoCtlParam(0, 1); }), ElementsAre(50, 20));
    EXPECT_THAT(waitsOf([] { SetVideoCtlDefaultParam(0); }), ElementsAre(50, 50, 10));
    EXPECT_THAT(waitsOf([] { ManualFocus(); }), ElementsAre(30, 25));
    EXPECT_THAT(waitsOf([] { ManualFocusEx(); }), ElementsAre(30, 20, 50));
}

TEST_F(CameraControls, AreSet) {
    for (int selector = 0; selector < 5; ++selector) {
        const int wanted = described(kIds[selector]).maximum;
        EXPECT_EQ(SetVideoCtlParam(selector, wanted), 0);
        EXPECT_EQ(value(kIds[selector]), wanted);
    }
}

TEST_F(CameraControls, GammaIsWrittenToThePreviouslyUsedControl) {
    const int gamma = value(V4L2_CID_GAMMA);
    ASSERT_EQ(SetVideoCtlParam(0, 10), 0);
    EXPECT_EQ(SetVideoCtlParam(5, 20), 0);
    EXPECT_EQ(value(V4L2_CID_BRIGHTNESS), 20);
    EXPECT_EQ(value(V4L2_CID_GAMMA), gamma);
}

TEST_F(CameraControls, AnUnknownSelectorSelectsThePreviouslyUsedControl) {
    ASSERT_EQ(SetVideoCtlParam(1, 10), 0);
    EXPECT_EQ(SetVideoCtlParam(9, 7), 0);
    EXPECT_EQ(value(V4L2_CID_CONTRAST), 7);
    int current = 0;
    ASSERT_EQ(GetVideoCtlParam(2, nullptr, nullptr, nullptr, &current), 0);
    int again = -1;
    EXPECT_EQ(GetVideoCtlParam(-1, nullptr, nullptr, nullptr, &again), 0);
    EXPECT_EQ(again, current);
}

TEST_F(CameraControls, ReturnToTheirDefault) {
    ASSERT_EQ(SetVideoCtlParam(3, described(V4L2_CID_HUE).maximum), 0);
    EXPECT_EQ(SetVideoCtlDefaultParam(3), described(V4L2_CID_HUE).defaultValue);
    EXPECT_EQ(value(V4L2_CID_HUE), described(V4L2_CID_HUE).defaultValue);
}

TEST_F(CameraControls, FailingToQueryLeavesTheOutputs) {
    addCallFault("VIDIOC_QUERYCTRL", EINVAL);
    int minimum = 5;
    int current = 6;
    EXPECT_EQ(GetVideoCtlParam(0, &minimum, nullptr, nullptr, &current), -1);
    EXPECT_EQ(minimum, 5);
    EXPECT_EQ(current, 6);
}

TEST_F(CameraControls, FailingToReadIsPrintedOnStandardError) {
    addCallFault("VIDIOC_G_CTRL", EIO);
    PrintedText printed(PrintedText::Stream::kError);
    int current = 6;
    EXPECT_EQ(GetVideoCtlParam(0, nullptr, nullptr, nullptr, &current), -2);
    EXPECT_EQ(printed.take(),
              complaint("**********************get ctrl failed**************\n", EIO));
    EXPECT_EQ(current, 6);
}

TEST_F(CameraControls, FailingToSetIsPrinted) {
    addCallFault("VIDIOC_S_CTRL", EIO);
    PrintedText printed;
    EXPECT_EQ(SetVideoCtlParam(0, 1), -1);
    EXPECT_EQ(printed.take(), "set param error!\n");
}

TEST_F(CameraControls, UnreadableDefaultsArePrintedOnStandardError) {
    addCallFault("VIDIOC_G_CTRL", EIO);
    PrintedText printed(PrintedText::Stream::kError);
    EXPECT_EQ(SetVideoCtlDefaultParam(0), -10002);
    EXPECT_EQ(printed.take(),
              complaint("**********************get default param failed**************\n", EIO));
}

TEST_F(CameraControls, UnwritableDefaultsArePrinted) {
    addCallFault("VIDIOC_S_CTRL", EIO);
    PrintedText printed;
    EXPECT_EQ(SetVideoCtlDefaultParam(0), -10003);
    EXPECT_EQ(printed.take(), "set default param error!\n");
}

TEST_F(CameraControls, DefaultOfAnUnknownControlWritesTheFailureValueToThePreviouslyUsedOne) {
    ASSERT_EQ(SetVideoCtlParam(3, 1), 0);
    addCallFault("VIDIOC_QUERYCTRL", EINVAL);
    EXPECT_EQ(SetVideoCtlDefaultParam(0), -10001);
    EXPECT_EQ(state().session.ctrl.id, static_cast<std::uint32_t>(V4L2_CID_HUE));
    EXPECT_EQ(value(V4L2_CID_HUE), described(V4L2_CID_HUE).minimum);
}

TEST_F(CameraControls, FocusTwiceInARowRestoresTheFirstState) {
    const int before = value(V4L2_CID_ZOOM_ABSOLUTE);
    EXPECT_EQ(ManualFocus(), 0);
    EXPECT_NE(value(V4L2_CID_ZOOM_ABSOLUTE) != 0, before != 0);
    EXPECT_EQ(ManualFocus(), 0);
    EXPECT_EQ(value(V4L2_CID_ZOOM_ABSOLUTE) != 0, before != 0);
}

TEST_F(CameraControls, FocusOnACameraWithoutItIsNoError) {
    addCallFault("VIDIOC_QUERYCTRL", EINVAL);
    EXPECT_EQ(ManualFocus(), 0);
    addCallFault("VIDIOC_QUERYCTRL", EINVAL);
    EXPECT_EQ(ManualFocusEx(), 0);
    EXPECT_EQ(virtualcam::callCount("VIDIOC_S_CTRL"), 0);
}

TEST_F(CameraControls, UnreadableFocusIsPrintedOnStandardError) {
    const auto expected =
        complaint("**********************get Focus params failed**************\n", EIO);
    for (const auto focus : {ManualFocus, ManualFocusEx}) {
        addCallFault("VIDIOC_G_CTRL", EIO);
        PrintedText printed(PrintedText::Stream::kError);
        EXPECT_EQ(focus(), -2);
        EXPECT_EQ(printed.take(), expected);
    }
}

TEST_F(CameraControls, UnwritableFocusIsPrinted) {
    addCallFault("VIDIOC_S_CTRL", EIO);
    PrintedText toggle;
    EXPECT_EQ(ManualFocus(), -3);
    EXPECT_EQ(toggle.take(), "set default param error!\n");

    addCallFault("VIDIOC_S_CTRL", EIO);
    PrintedText first;
    EXPECT_EQ(ManualFocusEx(), -3);
    EXPECT_EQ(first.take(), "set default param error 01!\n");

    addCallFault("VIDIOC_S_CTRL", EIO, 2);
    PrintedText second;
    EXPECT_EQ(ManualFocusEx(), -4);
    EXPECT_EQ(second.take(), "set default param error 02!\n");
}

TEST_F(CameraControls, RefocusSwitchesAutoFocusOffAndOn) {
    PrintedText printed;
    EXPECT_EQ(ManualFocusEx(), 0);
    EXPECT_EQ(printed.take(), "ManualFocus\n");
    EXPECT_EQ(virtualcam::callCount("VIDIOC_S_CTRL"), 2);
    EXPECT_EQ(value(V4L2_CID_FOCUS_AUTO), 1);
}

TEST_F(CameraControls, AreRefusedWithoutASession) {
    closeCamera();
    virtualcam::clearCalls();
    int minimum = 5;
    EXPECT_EQ(GetVideoCtlParam(0, &minimum, nullptr, nullptr, nullptr), -1);
    EXPECT_EQ(minimum, 5);
    EXPECT_EQ(SetVideoCtlParam(kMissing, 1), -1);
    EXPECT_EQ(SetVideoCtlDefaultParam(0), -10001);
    EXPECT_EQ(ManualFocus(), -1);
    EXPECT_EQ(ManualFocusEx(), -1);
    EXPECT_TRUE(virtualcam::calls().empty());
}

} // namespace
} // namespace doccam::test
