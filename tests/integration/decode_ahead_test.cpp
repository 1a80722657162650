// The next frame is fetched and decoded while one is shown, when the driver has it.
#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <opencv2/core.hpp>

#include <atomic>
#include <cerrno>
#include <thread>

namespace doccam::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr int kFramesWatched = 5;

std::atomic<int> shown{0};
std::atomic<int> closedIn{0};

void waitForDequeues(int count) {
    while (virtualcam::callCount("DQBUF") < count) {
        std::this_thread::yield();
    }
}

class DecodingAhead : public SessionTest {
  protected:
    DecodingAhead() {
        shown = 0;
        closedIn = 0;
        virtualcam::clearCalls();
    }

    static void waitUntilShown(int count) {
        for (int now = shown; now < count; now = shown) {
            shown.wait(now);
        }
    }

    static void show(int number) {
        shown = number;
        shown.notify_all();
    }
};

TEST_F(DecodingAhead, HasTheNextMjpegFrameWhileOneIsShown) {
    static std::atomic<int> withNext{0};
    withNext = 0;
    SetDataCallback([](unsigned char*, int, int) {
        const int number = shown + 1;
        if (number <= kFramesWatched) {
            withNext += virtualcam::callCount("DQBUF") > number ? 1 : 0;
        }
        show(number);
    });
    openSmall(kMjpegFormat);
    waitUntilShown(kFramesWatched);
    closeCamera();
    EXPECT_EQ(withNext, kFramesWatched);
}

TEST_F(DecodingAhead, DoesNotWaitForAFrameThatTheDriverLacks) {
    addFrameFault(virtualcam::FaultKind::kStall, 2);
    watchFrames();
    openSmall(kMjpegFormat);
    while (!virtualcam::waitedFor(earlier_)) {
        std::this_thread::yield();
    }
    EXPECT_EQ(framesSeen(), 1);
    closeCamera();
}

TEST_F(DecodingAhead, ReportsAFailureAfterTheFramesBeforeIt) {
    static std::string printedBefore;
    static PrintedText* printed = nullptr;
    PrintedText own;
    printed = &own;
    addCallFault("VIDIOC_DQBUF", EIO, 3);
    SetDataCallback([](unsigned char*, int, int) {
        const int number = shown + 1;
        if (number == 2) {
            waitForDequeues(3);
            printedBefore = printed->soFar();
        }
        show(number);
    });
    openSmall(kMjpegFormat);
    waitUntilShown(2);
    std::string text;
    do {
        text = own.soFar();
    } while (text.find("cam get image ret = -1\n") == std::string::npos);
    EXPECT_THAT(printedBefore, Not(HasSubstr("VIDIOC_DQBUF")));
    EXPECT_THAT(text, EndsWith("ioctl(VIDIOC_DQBUF) failed 5(Input/output error)grabImage "
                               "error!!!!!!!!!!\ncam get image ret = -1\n"));
    EXPECT_EQ(shown, 2);
    closeCamera();
}

TEST_F(DecodingAhead, DeliversWhatWasFetchedBeforeTheCameraWasUnplugged) {
    static virtualcam::CameraId camera{};
    camera = earlier_;
    PrintedText printed;
    SetDataCallback([](unsigned char*, int, int) {
        const int number = shown + 1;
        if (number == 2) {
            waitForDequeues(3);
            virtualcam::unplug(camera);
        }
        show(number);
    });
    openSmall(kMjpegFormat);
    waitUntilShown(3);
    while (printed.soFar().find("cam get image ret = -1\n") == std::string::npos) {
        std::this_thread::yield();
    }
    EXPECT_EQ(shown, 3);
    closeCamera();
}

TEST_F(DecodingAhead, LetsTheHostCloseTheCameraInACallback) {
    for (int frame = 1; frame <= 3; ++frame) {
        shown = 0;
        closedIn = frame;
        SetDataCallback([](unsigned char*, int, int) {
            const int number = shown + 1;
            if (number == closedIn) {
                closeCamera();
            }
            show(number);
        });
        SetVideoFormat(kMjpegFormat);
        ASSERT_EQ(openCamera(kIndexOfEarlier, 3264, 2448), 0);
        waitUntilShown(frame);
        EXPECT_EQ(state().session.cam_fd.get(), -1);
        EXPECT_EQ(state().session.pdecode.load(), nullptr);
    }
}

// The second frame is fetched while the first is shown, and the session ends before the callback
// returns.
TEST_F(DecodingAhead, DeliversNoFrameOfAClosedSession) {
    SetDataCallback([](unsigned char*, int, int) {
        const int number = shown + 1;
        if (number == 1) {
            waitForDequeues(2);
        }
        show(number);
        waitForStreamOff();
    });
    openSmall(kMjpegFormat);
    waitUntilShown(1);
    closeCamera();
    EXPECT_EQ(shown, 1);
}

} // namespace
} // namespace doccam::test
