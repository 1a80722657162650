// The camera is unplugged at each of the first frames, with all kinds of work pending.
#include "faults/sweep_fixture.h"
#include "state/library_state.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <atomic>
#include <filesystem>
#include <ostream>
#include <string>
#include <thread>

namespace doccam::test {
namespace {

constexpr int kReadQr = 1;

bool workIsPending() {
    return state().session.isShootPhoto && state().session.IsRecogBarQr != kNoCodeRequest;
}

// The host's threads that wait for a still and for a code.
class WaitingHost {
  public:
    explicit WaitingHost(const std::string& still)
      : still_(still) {
        // They would wait for seconds.
        virtualcam::setSleepScale(0.1);
        shooting_ = std::thread([this] { stillCode_ = captureImage(still_.c_str()); });
        reading_ = std::thread([this] { codeText_ = RecogBarQrCode(kReadQr); });
        while (!workIsPending()) {
            std::this_thread::yield();
        }
    }

    ~WaitingHost() { join(); }

    WaitingHost(const WaitingHost&) = delete;
    WaitingHost& operator=(const WaitingHost&) = delete;

    // Both time out soon, without a result.
    void expectReturn() {
        join();
        EXPECT_EQ(stillCode_, 0);
        EXPECT_FALSE(std::filesystem::exists(still_));
        EXPECT_STREQ(codeText_, "");
    }

  private:
    void join() {
        virtualcam::setSleepScale(0);
        for (std::thread* thread : {&shooting_, &reading_}) {
            if (thread->joinable()) {
                thread->join();
            }
        }
    }

    const std::string still_;
    int stillCode_ = -1;
    const char* codeText_ = nullptr;
    std::thread shooting_;
    std::thread reading_;
};

std::atomic<int> framesUntilUnplugged{0};
std::atomic<virtualcam::CameraId> unpluggedCamera{0};

void ignorePreview(unsigned char* /*pixels*/, int /*width*/, int /*height*/, int /*x*/, int /*y*/) {
}

// Requests everything and unplugs the camera while the library waits for its callback.
void unplugAtTheLastFrame(unsigned char* /*pixels*/, int /*width*/, int /*height*/) {
    if (framesUntilUnplugged == 1) {
        state().session.isShootPhoto = true;
        state().session.IsRecogBarQr = kReadQr;
        virtualcam::unplug(unpluggedCamera);
    }
    --framesUntilUnplugged;
    framesUntilUnplugged.notify_all();
}

struct Case {
    const char* name;
    int format;
    bool hasCallback; // the host has a fault callback
};

void PrintTo(const Case& unplugging, std::ostream* out) {
    *out << unplugging.name;
}

class Unplugged : public SweepTest, public testing::WithParamInterface<Case> {
  protected:
    Unplugged() {
        SetWebDataCallback(ignorePreview);
        if (!GetParam().hasCallback) {
            SetFaultCallback(nullptr);
        }
    }

    void expectTheEnd() {
        if (GetParam().hasCallback) {
            EXPECT_EQ(reasonOfTheEnd(), "the camera was unplugged");
        }
    }

    // The session owns the node and its buffers until the host closes it.
    void closeAndPlugAgain() {
        EXPECT_TRUE(state().session.bKeep);
        expectHeld(1, 5);
        EXPECT_EQ(closeCamera(), 0);
        expectHeld(0, 0);
        EXPECT_TRUE(workIsPending());
        bed_.unplug(earlier_);
        bed_.plug(earlier_);
        EXPECT_EQ(getDeviceCount(), 2);
    }

    // The first frame of the next session answers the requests still pending.
    void expectHealthyLibrary() {
        expectHealthySession(kMjpegFormat);
        EXPECT_FALSE(state().session.isShootPhoto);
        EXPECT_EQ(state().session.IsRecogBarQr, kNoCodeRequest);
        EXPECT_TRUE(std::filesystem::remove(still_));
        expectHealthySession(kYuyvFormat);
    }

    const ScratchFolder folder_;
    const std::string still_ = folder_.file("still.bmp");
};

TEST_P(Unplugged, WhileTheLoopWaitsLeavesARunningHostAndAHealthyLibrary) {
    for (int frame = 1; frame <= kFrames; frame += kStep) {
        SCOPED_TRACE(frame);
        addFrameFault(virtualcam::FaultKind::kStall, frame);
        watchFrames();
        ASSERT_EQ(open(GetParam().format), 0);
        SetWebFormSize(320, 240);
        while (!virtualcam::waitedFor(earlier_)) {
            std::this_thread::yield();
        }
        WaitingHost host(still_);
        bed_.unplug(earlier_);
        expectTheEnd();
        host.expectReturn();
        EXPECT_EQ(framesSeen(), frame - 1);
        closeAndPlugAgain();
        expectHealthyLibrary();
    }
}

TEST_P(Unplugged, WhileAFrameIsShownLeavesAHealthyLibrary) {
    state().session.imgSavePath.store(still_.c_str());
    for (int frame = 1; frame <= kFrames; frame += kStep) {
        SCOPED_TRACE(frame);
        state().settings.pGetVideoStream = unplugAtTheLastFrame;
        framesUntilUnplugged = frame;
        unpluggedCamera = earlier_;
        addFrameFault(virtualcam::FaultKind::kStall, frame + 1); // no frame is fetched ahead
        ASSERT_EQ(open(GetParam().format), 0);
        SetWebFormSize(320, 240);
        for (int left = frame; left > 0; left = framesUntilUnplugged) {
            framesUntilUnplugged.wait(left);
        }
        expectTheEnd();
        EXPECT_EQ(framesUntilUnplugged, 0);
        closeAndPlugAgain();
        state().settings.pGetVideoStream = nullptr;
        watchFrames();
        expectHealthyLibrary();
    }
}

INSTANTIATE_TEST_SUITE_P(EachFrame, Unplugged,
                         testing::Values(Case{"Mjpeg", kMjpegFormat, true},
                                         Case{"Yuyv", kYuyvFormat, true},
                                         Case{"MjpegWithoutCallback", kMjpegFormat, false},
                                         Case{"YuyvWithoutCallback", kYuyvFormat, false}),
                         [](const auto& unplugging) { return std::string(unplugging.param.name); });

} // namespace
} // namespace doccam::test
