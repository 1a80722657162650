#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/printed_text.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>

namespace doccam::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

class CloseCamera : public SessionTest {};

std::string repeated(const std::string& line, int times) {
    std::string lines;
    for (int i = 0; i < times; ++i) {
        lines += line;
    }
    return lines;
}

const std::string kNothingMapped = repeated("munmap fail!!!\n", 5);

TEST_F(CloseCamera, PrintsNothingAboutBuffersThatWereNeverMapped) {
    PrintedText printed;
    EXPECT_EQ(closeCamera(), 0);
    EXPECT_EQ(printed.take(), "");
}

TEST_F(CloseCamera, PrintsNothingAboutBuffersThatAFailedOpenDidNotMap) {
    addCallFault("QUERYBUF", EIO, 3);
    SetVideoFormat(kMjpegFormat);
    EXPECT_EQ(openCamera(kIndexOfEarlier, 640, 480), -10);
    PrintedText printed;
    EXPECT_EQ(closeCamera(), 0);
    EXPECT_EQ(printed.take(), "");
    EXPECT_EQ(virtualcam::liveMappings(), 0);
}

TEST_F(CloseCamera, ReleasesEverythingAndPrintsWhatItReleased) {
    // Lets the loop see the end of the session before STREAMOFF.
    virtualcam::setSleepScale(1);
    openSmall(kMjpegFormat);
    state().session.frames->preview = std::make_unique<unsigned char[]>(12);
    state().view.WEB_BUF = state().session.frames->preview.get();
    state().session.frames->zoomimage.create(4, 4, CV_8UC3);
    PrintedText printed;
    EXPECT_EQ(closeCamera(), 0);
    EXPECT_EQ(printed.take(), ">>>>>>>>>>>>> closeCamera 01!\n>>>>>>>>>>>>> closeCamera 02!\n"
                              ">>>>>>>>>>>>> closeCamera 03!\n>>>>>>>>>>>>> closeCamera 04!\n");
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(virtualcam::liveMappings(), 0);
    EXPECT_TRUE(state().session.frames->srcimage.empty());
    EXPECT_TRUE(state().session.frames->roimage.empty());
    EXPECT_TRUE(state().session.frames->zoomimage.empty());
    EXPECT_EQ(state().view.WEB_BUF, nullptr);
    EXPECT_EQ(state().session.pdecode, nullptr);
    EXPECT_EQ(state().session.cam_fd.get(), -1);
    EXPECT_FALSE(state().session.bKeep);
}

TEST_F(CloseCamera, ReturnsZeroTwiceInARow) {
    openSmall(kMjpegFormat);
    EXPECT_EQ(closeCamera(), 0);
    PrintedText printed;
    EXPECT_EQ(closeCamera(), 0);
    EXPECT_EQ(printed.take(), kNothingMapped);
}

TEST_F(CloseCamera, MayBeCalledByTwoThreadsAtOnce) {
    for (int session = 0; session < 10; ++session) {
        openSmall(session % 2);
        std::thread other([] { EXPECT_EQ(closeCamera(), 0); });
        EXPECT_EQ(closeCamera(), 0);
        EXPECT_EQ(virtualcam::openHandles(), 0);
        EXPECT_EQ(virtualcam::liveMappings(), 0);
        other.join();
    }
}

TEST_F(CloseCamera, KeepsItsOrderAndItsWaits) {
    openSmall(kMjpegFormat);
    virtualcam::clearCalls();
    virtualcam::clearSleeps();
    const pid_t self = gettid();
    closeCamera();
    std::vector<long> waits;
    for (const virtualcam::Sleep& sleep : virtualcam::sleeps()) {
        if (sleep.thread == self) {
            waits.push_back(sleep.microseconds);
        }
    }
    EXPECT_THAT(waits, ElementsAre(550000, 10000, 10000, 10000, 10000, 10000, 100000, 100000));

    std::vector<std::string> requests;
    for (const virtualcam::Call& call : virtualcam::calls()) {
        if (call.request != "DQBUF" && call.request != "QBUF") {
            requests.push_back(call.request);
        }
    }
    EXPECT_THAT(requests,
                ElementsAre("STREAMOFF", "QUERYBUF", "munmap", "QUERYBUF", "munmap", "QUERYBUF",
                            "munmap", "QUERYBUF", "munmap", "QUERYBUF", "munmap", "close"));
}

TEST_F(CloseCamera, KeepsSettingsCallbacksAndSizes) {
    watchFrames();
    SetColorMode(2);
    openSmall(kMjpegFormat);
    closeCamera();
    EXPECT_EQ(state().settings.colorMode, 2);
    EXPECT_NE(state().settings.pGetVideoStream.load(), nullptr);
    EXPECT_GT(getFormatResolutionCount(0), 0);
    openSmall(kMjpegFormat);
    waitForFrames(1);
}

TEST_F(CloseCamera, WakesAThreadThatWaitsForASilentCamera) {
    addFrameFault(virtualcam::FaultKind::kStall, 1);
    openSmall(kMjpegFormat);
    while (!virtualcam::waitedFor(earlier_)) {
        std::this_thread::yield();
    }
    PrintedText printed;
    closeCamera();
    EXPECT_THAT(printed.take(), HasSubstr("grabImage error!!!!!!!!!!\ncam get image ret = -1\n"));
}

TEST_F(CloseCamera, UnmapsTheBuffersOfAnUnpluggedCamera) {
    watchFrames();
    openSmall(kMjpegFormat);
    waitForFrames(1);
    bed_.unplug(earlier_);
    PrintedText printed;
    closeCamera();
    EXPECT_THAT(printed.take(), HasSubstr(kNothingMapped));
    EXPECT_EQ(virtualcam::liveMappings(), 0);
    EXPECT_EQ(virtualcam::openHandles(), 0);
}

std::atomic<int> callbacks{0};
std::atomic<bool> unmappedMeanwhile{false};

// Long enough for a close that does not wait, far too short for one that does.
bool isUnmappedSoon() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
    while (virtualcam::callCount("munmap") == 0 && std::chrono::steady_clock::now() < end) {
        std::this_thread::yield();
    }
    return virtualcam::callCount("munmap") > 0;
}

// The host closes while one frame is shown and others wait in the driver.
TEST_F(CloseCamera, WaitsForTheFrameThatIsShownAndLetsNoOtherArrive) {
    SetDataCallback([](unsigned char*, int, int) {
        callbacks.fetch_add(1);
        callbacks.notify_all();
        waitForStreamOff();
        unmappedMeanwhile = isUnmappedSoon();
    });
    for (const int format : {kMjpegFormat, kYuyvFormat}) {
        callbacks = 0;
        virtualcam::clearCalls();
        openSmall(format);
        callbacks.wait(0);
        closeCamera();
        EXPECT_FALSE(unmappedMeanwhile) << format;
        EXPECT_EQ(callbacks, 1) << format;
    }
}

TEST_F(CloseCamera, OfAForkedChildLeavesTheStreamToTheParent) {
    addFrameFault(virtualcam::FaultKind::kStall, 1);
    watchFrames();
    openSmall(kMjpegFormat);
    // While the parent's thread is idle it holds no lock that the child would need.
    while (!virtualcam::waitedFor(earlier_)) {
        std::this_thread::yield();
    }
    virtualcam::clearCalls();
    const pid_t child = fork();
    if (child == 0) {
        closeCamera();
        const bool closed = virtualcam::callCount("close") == 1 && virtualcam::openHandles() == 0;
        _exit(closed ? virtualcam::callCount("STREAMOFF") : 99);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    virtualcam::resume(earlier_);
    EXPECT_TRUE(waitForFrames(2));
}

TEST_F(CloseCamera, CanBeFollowedByManySessions) {
    watchFrames();
    int frames = 0;
    for (int session = 0; session < 20; ++session) {
        openSmall(session % 2);
        waitForFrames(++frames);
        closeCamera();
        frames = framesSeen();
        ASSERT_EQ(virtualcam::openHandles(), 0);
        ASSERT_EQ(virtualcam::liveMappings(), 0);
    }
}

} // namespace
} // namespace doccam::test
