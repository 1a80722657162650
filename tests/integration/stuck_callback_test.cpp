// Callbacks that end their own session or keep it from ending.
#include "integration/session_fixture.h"
#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <numeric>
#include <thread>

namespace doccam::test {
namespace {

std::atomic<int> entered{0};
std::atomic<int> left{0};
std::atomic<bool> released{false};
std::atomic<unsigned> pixelSum{0};
std::atomic<bool> interruptBlocked{false};
std::atomic<bool> faultBlocked{true};
std::atomic<bool> pixelsStayed{false};

void reset() {
    entered = 0;
    left = 0;
    released = false;
}

void waitUntil(std::atomic<int>& count, int wanted) {
    for (int now = count; now < wanted; now = count) {
        count.wait(now);
    }
}

void raise(std::atomic<int>& count) {
    count.fetch_add(1);
    count.notify_all();
}

// Reads every pixel, so that freed memory is noticed.
void readFrame(const unsigned char* pixels, int width, int height) {
    pixelSum = std::accumulate(pixels, pixels + width * height * 3, 0U);
}

void closesItself(unsigned char* pixels, int width, int height) {
    raise(entered);
    closeCamera();
    readFrame(pixels, width, height);
    raise(left);
}

void waitsForItsHost(unsigned char* pixels, int width, int height) {
    raise(entered);
    released.wait(false);
    readFrame(pixels, width, height);
    raise(left);
}

void closesAndReopens(unsigned char* pixels, int width, int height) {
    if (entered.fetch_add(1) == 0) {
        closeCamera();
        openCamera(0, 640, 480);
        readFrame(pixels, width, height);
    }
    raise(left);
}

void recordSignalMask(unsigned char*, int, int) {
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    interruptBlocked = sigismember(&blocked, SIGINT) == 1 && sigismember(&blocked, SIGCHLD) == 1;
    faultBlocked = sigismember(&blocked, SIGSEGV) == 1 || sigismember(&blocked, SIGFPE) == 1 ||
                   sigismember(&blocked, SIGPROF) == 1;
    raise(left);
}

class StuckCallback : public SessionTest {
  protected:
    StuckCallback() { reset(); }
};

TEST_F(StuckCallback, MayCloseTheCameraItself) {
    SetDataCallback(closesItself);
    openSmall(kMjpegFormat);
    waitUntil(left, 1);
    EXPECT_EQ(entered, 1);
    EXPECT_FALSE(state().session.bKeep);
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(virtualcam::liveMappings(), 0);
}

TEST_F(StuckCallback, MayCloseTheCameraWhileItsHostDoes) {
    for (int round = 0; round < 20; ++round) {
        reset();
        SetDataCallback(closesItself);
        openSmall(round % 2);
        waitUntil(entered, 1);
        // Sometimes the callback stops the stream first, sometimes the host.
        for (int pause = 0; pause < round * 3; ++pause) {
            std::this_thread::yield();
        }
        EXPECT_EQ(closeCamera(), 0);
        EXPECT_FALSE(state().session.bKeep);
        EXPECT_EQ(virtualcam::openHandles(), 0);
        EXPECT_EQ(virtualcam::liveMappings(), 0);
        waitUntil(left, 1);
    }
}

TEST_F(StuckCallback, MayCloseAndReopenTheCamera) {
    SetDataCallback(closesAndReopens);
    openSmall(kYuyvFormat);
    waitUntil(left, 5);
    EXPECT_TRUE(state().session.bKeep);
    EXPECT_EQ(virtualcam::openHandles(), 1);
}

TEST_F(StuckCallback, WaitingForTheClosingThreadDoesNotBlockItForEver) {
    SetDataCallback(waitsForItsHost);
    openSmall(kMjpegFormat);
    waitUntil(entered, 1);
    EXPECT_EQ(closeCamera(), 0);
    EXPECT_EQ(left, 0);
    EXPECT_EQ(virtualcam::openHandles(), 0);

    // The next session runs while the old callback still holds its frame.
    openSmall(kMjpegFormat);
    waitUntil(entered, 2);
    released = true;
    released.notify_all();
    waitUntil(left, 3);
}

TEST_F(StuckCallback, DoesNotBlockAChildForkedWhileItsParentCloses) {
    SetDataCallback(waitsForItsHost);
    openSmall(kMjpegFormat);
    waitUntil(entered, 1);
    virtualcam::clearCalls();
    std::thread closing([] { closeCamera(); });
    while (virtualcam::callCount("STREAMOFF") == 0) {
        std::this_thread::yield();
    }
    const pid_t child = fork();
    if (child == 0) {
        alarm(60);
        closeCamera();
        _exit(0);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    released = true;
    released.notify_all();
    closing.join();
    waitUntil(left, 1);
}

void keepsThePreview(unsigned char* pixels, int width, int height, int, int) {
    const bool first = entered.fetch_add(1) == 0;
    entered.notify_all();
    if (!first) {
        return;
    }
    const std::vector<unsigned char> before(pixels, pixels + width * height * 3);
    released.wait(false);
    pixelsStayed = std::equal(before.begin(), before.end(), pixels);
    raise(left);
}

TEST_F(StuckCallback, KeepsItsPreviewPictureThroughTheNextSession) {
    SetWebDataCallback(keepsThePreview);
    openSmall(kMjpegFormat);
    SetWebFormSize(320, 240);
    waitUntil(entered, 1);
    // Closes the session's descriptor, so that opening ends the session without closing it.
    getCameraName(kIndexOfEarlier);
    virtualcam::moveSheet(earlier_, 0.2, 0.2, 30);
    openSmall(kMjpegFormat);
    SetWebFormSize(320, 240);
    waitUntil(entered, 3);
    released = true;
    released.notify_all();
    waitUntil(left, 1);
    EXPECT_TRUE(pixelsStayed);
}

TEST_F(StuckCallback, ReceivesNoneOfTheHostsSignalsButItsOwnFaults) {
    SetDataCallback(recordSignalMask);
    openSmall(kYuyvFormat);
    waitUntil(left, 1);
    EXPECT_TRUE(interruptBlocked);
    EXPECT_FALSE(faultBlocked);
}

} // namespace
} // namespace doccam::test
