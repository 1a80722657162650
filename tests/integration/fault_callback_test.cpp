// What a host with a fault callback survives and receives, and what happens without one.
#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace doccam::test {
namespace {

using testing::HasSubstr;
using virtualcam::FaultKind;

std::mutex messageMutex;
std::vector<std::string> messages;
std::atomic<int> faultCount{0};
std::atomic<int> lastFault{0};

void onFault(int fault, const char* message) {
    {
        const std::lock_guard lock(messageMutex);
        messages.emplace_back(message);
    }
    lastFault = fault;
    faultCount.fetch_add(1);
    faultCount.notify_all();
}

void closesOnFault(int fault, const char* message) {
    closeCamera();
    onFault(fault, message);
}

void waitForFaults(int count) {
    for (int now = faultCount; now < count; now = faultCount) {
        faultCount.wait(now);
    }
}

std::string lastMessage() {
    const std::lock_guard lock(messageMutex);
    return messages.empty() ? "" : messages.back();
}

class ReportedFaults : public SessionTest {
  protected:
    ReportedFaults() {
        faultCount = 0;
        lastFault = 0;
        messages.clear();
        SetFaultCallback(onFault);
    }

    // Without the callback a stream that keeps throwing would end the process.
    ~ReportedFaults() override {
        virtualcam::setSleepScale(0.01);
        closeCamera();
        SetFaultCallback(nullptr);
    }

    // Requests a still of a sheet left of the frame from the first frame.
    void requestStillOfASheetOutside() {
        constexpr int kCorners[] = {-10, 5, 300, -4, 310, 400, -2, 410};
        std::copy(std::begin(kCorners), std::end(kCorners), state().sheet.CutPoint.begin());
        SetCutType(1);
        state().session.imgSavePath.store(still_.c_str());
        state().session.isShootPhoto = true;
    }

    ScratchFolder folder_;
    const std::string still_ = folder_.file("still.jpg");
};

TEST_F(ReportedFaults, AreSurvivedByTheStream) {
    requestStillOfASheetOutside();
    watchFrames();
    openSmall(kMjpegFormat);
    waitForFaults(1);
    EXPECT_EQ(lastFault, DOCCAM_FAULT_STILL);
    EXPECT_THAT(lastMessage(), HasSubstr("-215:Assertion failed"));
    waitForFrames(3);
    EXPECT_FALSE(state().session.isShootPhoto);
    EXPECT_FALSE(std::filesystem::exists(still_));
    SetCutType(0);
    virtualcam::setSleepScale(1);
    takeStill(still_);
    EXPECT_TRUE(std::filesystem::exists(still_));
    EXPECT_EQ(faultCount, 1);
}

std::atomic<bool> closedInFault{false};

// As a host does that opens its next session there, which reports a fault of its own.
void closesAndBegins(int, const char*) {
    closeCamera();
    state().session.reportingFaults = true;
    closedInFault = true;
    closedInFault.notify_all();
}

TEST_F(ReportedFaults, OfTheSessionAfterAreNotTakenForThoseOfTheClosedOne) {
    SetFaultCallback(closesAndBegins);
    requestStillOfASheetOutside();
    openSmall(kMjpegFormat);
    const auto framesOfTheClosed = [] {
        const std::lock_guard lock(state().session.framesMutex);
        return std::weak_ptr<Frames>(state().session.frames);
    }();
    closedInFault.wait(false);
    while (!framesOfTheClosed.expired()) { // its thread has them
        std::this_thread::yield();
    }
    EXPECT_TRUE(state().session.reportingFaults.exchange(false));
}

TEST_F(ReportedFaults, EndTheProcessWithoutACallback) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            SetFaultCallback(nullptr);
            requestStillOfASheetOutside();
            watchFrames();
            openSmall(kMjpegFormat);
            waitForFrames(3);
        },
        testing::KilledBySignal(SIGABRT), HasSubstr("-215:Assertion failed"));
}

TEST_F(ReportedFaults, CompleteAStillThatCannotBeSaved) {
    virtualcam::setSleepScale(1);
    openSmall(kMjpegFormat);
    takeStill(folder_.file("missing/still.jpg"));
    EXPECT_EQ(lastFault, DOCCAM_FAULT_STILL);
    EXPECT_THAT(lastMessage(), HasSubstr("missing/still.jpg could not be written"));
}

TEST_F(ReportedFaults, CompleteAStillWithAnUnknownExtension) {
    virtualcam::setSleepScale(1);
    openSmall(kMjpegFormat);
    int count = 0;
    for (const std::string& path : {folder_.file("still.foo"), std::string("ab")}) {
        takeStill(path);
        EXPECT_EQ(faultCount, ++count) << path;
        EXPECT_EQ(lastFault, DOCCAM_FAULT_STILL);
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

TEST_F(ReportedFaults, OfAnUnknownExtensionEndTheProcessWithoutACallback) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            SetFaultCallback(nullptr);
            virtualcam::setSleepScale(1);
            openSmall(kMjpegFormat);
            captureImage(folder_.file("still.foo").c_str());
        },
        testing::KilledBySignal(SIGABRT), HasSubstr("could not find"));
}

TEST_F(ReportedFaults, CompleteACodeRequestThatFails) {
    // A frame without pixels takes the place of the turned one.
    SetRotate(1);
    SetDataCallback([](unsigned char*, int, int) { state().session.frames->roimage.release(); });
    openSmall(kMjpegFormat);
    while (faultCount == 0) {
        RecogBarQrCode(1);
    }
    EXPECT_EQ(lastFault, DOCCAM_FAULT_CODE);
    EXPECT_EQ(state().session.IsRecogBarQr, kNoCodeRequest);
}

TEST_F(ReportedFaults, OfAPreviewCallbackKeepTheStreamRunning) {
    watchFrames();
    SetWebDataCallback(
        [](unsigned char*, int, int, int, int) { throw std::runtime_error("no window"); });
    openSmall(kYuyvFormat);
    SetWebFormSize(320, 240);
    waitForFaults(3);
    EXPECT_EQ(lastFault, DOCCAM_FAULT_PREVIEW);
    EXPECT_EQ(lastMessage(), "no window");
}

TEST_F(ReportedFaults, IncludeAnUnpluggedCamera) {
    watchFrames();
    openSmall(kMjpegFormat);
    waitForFrames(1);
    bed_.unplug(earlier_);
    waitForFaults(1);
    EXPECT_EQ(lastFault, DOCCAM_FAULT_STREAM_ENDED);
    EXPECT_EQ(lastMessage(), "the camera was unplugged");
}

TEST_F(ReportedFaults, IncludeAFailingDriver) {
    addCallFault("VIDIOC_DQBUF", EIO, 3);
    openSmall(kMjpegFormat);
    waitForFaults(1);
    EXPECT_EQ(lastFault, DOCCAM_FAULT_STREAM_ENDED);
    EXPECT_EQ(lastMessage(), "the driver failed to hand over a frame");
}

TEST_F(ReportedFaults, IncludeABufferThatDoesNotExist) {
    addFrameFault(FaultKind::kIndex, 2, 99);
    openSmall(kMjpegFormat);
    waitForFaults(1);
    EXPECT_EQ(lastMessage(), "the driver named a buffer that does not exist");
}

TEST_F(ReportedFaults, OfAFrameCallbackKeepTheStreamRunning) {
    SetDataCallback([](unsigned char*, int, int) { throw std::runtime_error("host trouble"); });
    openSmall(kMjpegFormat);
    waitForFaults(3);
    EXPECT_EQ(lastFault, DOCCAM_FAULT_FRAME);
    EXPECT_EQ(lastMessage(), "host trouble");
    EXPECT_EQ(closeCamera(), 0);
}

TEST_F(ReportedFaults, AreNoneWhenTheHostCloses) {
    watchFrames();
    for (int session = 0; session < 5; ++session) {
        openSmall(session % 2);
        waitForFrames(framesSeen() + 1);
        closeCamera();
    }
    EXPECT_EQ(faultCount, 0);
}

TEST_F(ReportedFaults, MayBeAnsweredByClosingTheCamera) {
    SetFaultCallback(closesOnFault);
    requestStillOfASheetOutside();
    openSmall(kMjpegFormat);
    waitForFaults(1);
    EXPECT_EQ(virtualcam::openHandles(), 0);
    EXPECT_EQ(virtualcam::liveMappings(), 0);
    EXPECT_FALSE(state().session.isShootPhoto);
    SetFaultCallback(onFault);
    SetCutType(0);
    watchFrames();
    openSmall(kMjpegFormat);
    waitForFrames(1);
}

TEST_F(ReportedFaults, ArriveBeforeTheRequestIsCompleted) {
    SetRotate(1);
    static std::atomic<bool> emptied;
    emptied = false;
    SetDataCallback([](unsigned char*, int, int) {
        state().session.frames->roimage.release();
        emptied = true;
        emptied.notify_all();
    });
    openSmall(kMjpegFormat);
    // The first frame still shows a code.
    emptied.wait(false);
    while (faultCount == 0) {
        EXPECT_STREQ(RecogBarQrCode(1), "");
    }
    EXPECT_EQ(lastFault, DOCCAM_FAULT_CODE);
}

TEST_F(ReportedFaults, OfAPdfStillAreTheDocumentsAndTheStills) {
    virtualcam::setSleepScale(1);
    openSmall(kMjpegFormat);
    takeStill(folder_.file("missing/still.pdf"));
    EXPECT_EQ(faultCount, 2);
    EXPECT_EQ(lastFault, DOCCAM_FAULT_STILL);
}

TEST_F(ReportedFaults, ArriveFromTheMomentTheCallbackIsSet) {
    SetFaultCallback(nullptr);
    SetDataCallback([](unsigned char*, int, int) {
        SetFaultCallback(onFault);
        throw std::runtime_error("host trouble");
    });
    openSmall(kMjpegFormat);
    waitForFaults(2);
    EXPECT_EQ(lastMessage(), "host trouble");
}

TEST_F(ReportedFaults, EndTheProcessAfterTheCallbackIsRemoved) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            SetDataCallback([](unsigned char*, int, int) {
                SetFaultCallback(nullptr);
                throw std::runtime_error("host trouble");
            });
            openSmall(kMjpegFormat);
            waitForFaults(1);
        },
        testing::KilledBySignal(SIGABRT), "host trouble");
}

TEST_F(ReportedFaults, MayThrowInTheCallback) {
    SetFaultCallback([](int fault, const char* message) {
        onFault(fault, message);
        throw std::runtime_error("no log");
    });
    requestStillOfASheetOutside();
    watchFrames();
    openSmall(kMjpegFormat);
    waitForFaults(1);
    waitForFrames(3);
    EXPECT_FALSE(state().session.isShootPhoto);
}

TEST_F(ReportedFaults, DoNotQueryTheDriverWithoutACallback) {
    static std::atomic<pid_t> streaming{0};
    streaming = 0;
    SetFaultCallback(nullptr);
    SetDataCallback([](unsigned char*, int, int) {
        streaming = gettid();
        streaming.notify_all();
    });
    addCallFault("VIDIOC_DQBUF", EIO, 3);
    addFrameFault(FaultKind::kStall, 1);
    openSmall(kMjpegFormat);
    const int queries = virtualcam::callCount("VIDIOC_QUERYCAP");
    virtualcam::resume(earlier_);
    streaming.wait(0);
    while (std::filesystem::exists("/proc/self/task/" + std::to_string(streaming))) {
        std::this_thread::yield();
    }
    EXPECT_EQ(virtualcam::callCount("VIDIOC_QUERYCAP"), queries);
}

TEST_F(ReportedFaults, OfADocumentArriveOnTheThreadThatMakesIt) {
    pdf_start(folder_.file("missing/document.pdf").c_str());
    pdf_end();
    EXPECT_EQ(lastFault, DOCCAM_FAULT_DOCUMENT);
    EXPECT_THAT(lastMessage(), HasSubstr("missing/document.pdf"));
}

} // namespace
} // namespace doccam::test
