// What a host with a fault callback survives and hears, and what happens without one.
#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gmock/gmock.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace doccam::test {
namespace {

using testing::HasSubstr;
using virtualcam::FaultKind;

std::mutex heardMutex;
std::vector<std::string> heardMessages;
std::atomic<int> heard{0};
std::atomic<int> heardLast{0};

void onFault(int fault, const char* message) {
    {
        const std::lock_guard lock(heardMutex);
        heardMessages.emplace_back(message);
    }
    heardLast = fault;
    heard.fetch_add(1);
    heard.notify_all();
}

void closesOnFault(int fault, const char* message) {
    closeCamera();
    onFault(fault, message);
}

void waitForFaults(int count) {
    for (int now = heard; now < count; now = heard) {
        heard.wait(now);
    }
}

std::string lastMessage() {
    const std::lock_guard lock(heardMutex);
    return heardMessages.empty() ? "" : heardMessages.back();
}

class HeardFaults : public SessionTest {
  protected:
    HeardFaults() {
        heard = 0;
        heardLast = 0;
        heardMessages.clear();
        SetFaultCallback(onFault);
    }

    // A stream that goes on throwing would end the process without the callback.
    ~HeardFaults() override {
        virtualcam::setSleepScale(0.01);
        closeCamera();
        SetFaultCallback(nullptr);
    }

    // Makes the first frame's still one of a sheet that lies left of the frame.
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

TEST_F(HeardFaults, AreSurvivedByTheStream) {
    requestStillOfASheetOutside();
    watchFrames();
    openSmall(kMjpegFormat);
    waitForFaults(1);
    EXPECT_EQ(heardLast, DOCCAM_FAULT_STILL);
    EXPECT_THAT(lastMessage(), HasSubstr("-215:Assertion failed"));
    waitForFrames(3);
    EXPECT_FALSE(state().session.isShootPhoto);
    EXPECT_FALSE(std::filesystem::exists(still_));
    SetCutType(0);
    virtualcam::setSleepScale(1);
    takeStill(still_);
    EXPECT_TRUE(std::filesystem::exists(still_));
    EXPECT_EQ(heard, 1);
}

TEST_F(HeardFaults, EndTheProcessWhenNobodyHears) {
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

TEST_F(HeardFaults, AnswerAStillThatCannotBeSaved) {
    virtualcam::setSleepScale(1);
    openSmall(kMjpegFormat);
    takeStill(folder_.file("missing/still.jpg"));
    EXPECT_EQ(heardLast, DOCCAM_FAULT_STILL);
    EXPECT_THAT(lastMessage(), HasSubstr("missing/still.jpg could not be written"));
}

TEST_F(HeardFaults, AnswerAStillWhoseNameNamesNoType) {
    virtualcam::setSleepScale(1);
    openSmall(kMjpegFormat);
    int count = 0;
    for (const std::string& path : {folder_.file("still.foo"), std::string("ab")}) {
        takeStill(path);
        EXPECT_EQ(heard, ++count) << path;
        EXPECT_EQ(heardLast, DOCCAM_FAULT_STILL);
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

TEST_F(HeardFaults, OfAnUnknownTypeEndTheProcessWhenNobodyHears) {
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

TEST_F(HeardFaults, AnswerACodeThatCannotBeLookedFor) {
    // A frame without pixels takes the place of the turned one.
    SetRotate(1);
    SetDataCallback([](unsigned char*, int, int) { state().session.frames->roimage.release(); });
    openSmall(kMjpegFormat);
    while (heard == 0) {
        RecogBarQrCode(1);
    }
    EXPECT_EQ(heardLast, DOCCAM_FAULT_CODE);
    EXPECT_EQ(state().session.IsRecogBarQr, kNoCodeRequest);
}

TEST_F(HeardFaults, OfAPreviewCallbackLeaveTheStreamGoingOn) {
    watchFrames();
    SetWebDataCallback(
        [](unsigned char*, int, int, int, int) { throw std::runtime_error("no window"); });
    openSmall(kYuyvFormat);
    SetWebFormSize(320, 240);
    waitForFaults(3);
    EXPECT_EQ(heardLast, DOCCAM_FAULT_PREVIEW);
    EXPECT_EQ(lastMessage(), "no window");
}

TEST_F(HeardFaults, TellOfAnUnpluggedCamera) {
    watchFrames();
    openSmall(kMjpegFormat);
    waitForFrames(1);
    bed_.unplug(earlier_);
    waitForFaults(1);
    EXPECT_EQ(heardLast, DOCCAM_FAULT_STREAM_ENDED);
    EXPECT_EQ(lastMessage(), "the camera was unplugged");
}

TEST_F(HeardFaults, TellOfADriverThatFails) {
    addCallFault("VIDIOC_DQBUF", EIO, 3);
    openSmall(kMjpegFormat);
    waitForFaults(1);
    EXPECT_EQ(heardLast, DOCCAM_FAULT_STREAM_ENDED);
    EXPECT_EQ(lastMessage(), "the driver failed to hand over a frame");
}

TEST_F(HeardFaults, TellOfABufferThatDoesNotExist) {
    addFrameFault(FaultKind::kIndex, 2, 99);
    openSmall(kMjpegFormat);
    waitForFaults(1);
    EXPECT_EQ(lastMessage(), "the driver named a buffer that does not exist");
}

TEST_F(HeardFaults, OfAFrameCallbackLeaveTheStreamGoingOn) {
    SetDataCallback([](unsigned char*, int, int) { throw std::runtime_error("host trouble"); });
    openSmall(kMjpegFormat);
    waitForFaults(3);
    EXPECT_EQ(heardLast, DOCCAM_FAULT_FRAME);
    EXPECT_EQ(lastMessage(), "host trouble");
    EXPECT_EQ(closeCamera(), 0);
}

TEST_F(HeardFaults, AreNoneWhenTheHostCloses) {
    watchFrames();
    for (int session = 0; session < 5; ++session) {
        openSmall(session % 2);
        waitForFrames(framesSeen() + 1);
        closeCamera();
    }
    EXPECT_EQ(heard, 0);
}

TEST_F(HeardFaults, MayBeAnsweredByClosingTheCamera) {
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

TEST_F(HeardFaults, AreHeardBeforeTheRequestIsAnswered) {
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
    while (heard == 0) {
        EXPECT_STREQ(RecogBarQrCode(1), "");
    }
    EXPECT_EQ(heardLast, DOCCAM_FAULT_CODE);
}

TEST_F(HeardFaults, OfAStillAsPdfAreBothTheDocumentsAndTheStills) {
    virtualcam::setSleepScale(1);
    openSmall(kMjpegFormat);
    takeStill(folder_.file("missing/still.pdf"));
    EXPECT_EQ(heard, 2);
    EXPECT_EQ(heardLast, DOCCAM_FAULT_STILL);
}

TEST_F(HeardFaults, AreHeardFromTheMomentTheCallbackIsSet) {
    SetFaultCallback(nullptr);
    SetDataCallback([](unsigned char*, int, int) {
        SetFaultCallback(onFault);
        throw std::runtime_error("host trouble");
    });
    openSmall(kMjpegFormat);
    waitForFaults(2);
    EXPECT_EQ(lastMessage(), "host trouble");
}

TEST_F(HeardFaults, EndTheProcessAfterTheCallbackIsTakenAway) {
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

TEST_F(HeardFaults, MayThrowInTheirCallback) {
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

TEST_F(HeardFaults, AskTheDriverForNoReasonWhenNobodyHears) {
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
    const int asked = virtualcam::callCount("VIDIOC_QUERYCAP");
    virtualcam::resume(earlier_);
    streaming.wait(0);
    while (std::filesystem::exists("/proc/self/task/" + std::to_string(streaming))) {
        std::this_thread::yield();
    }
    EXPECT_EQ(virtualcam::callCount("VIDIOC_QUERYCAP"), asked);
}

TEST_F(HeardFaults, TellOfADocumentOnTheThreadThatMakesIt) {
    pdf_start(folder_.file("missing/document.pdf").c_str());
    pdf_end();
    EXPECT_EQ(heardLast, DOCCAM_FAULT_DOCUMENT);
    EXPECT_THAT(lastMessage(), HasSubstr("missing/document.pdf"));
}

} // namespace
} // namespace doccam::test
