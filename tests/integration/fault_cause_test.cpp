// The cause that a fault callback can query.
#include "integration/session_fixture.h"
#include "state/library_state.h"
#include "support/scratch_folder.h"

#include <doccam/doccam.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <string>

namespace doccam::test {
namespace {

using virtualcam::FaultKind;

constexpr int kNoneYet = -1;

std::atomic<int> reportedCause{kNoneYet};
std::atomic<int> reportedFault{0};

void noteCause(int fault, const char* /*message*/) {
    reportedFault = fault;
    reportedCause = doccam_fault_cause();
    reportedCause.notify_all();
}

int awaitedCause() {
    reportedCause.wait(kNoneYet);
    return reportedCause;
}

class FaultCause : public SessionTest {
  protected:
    FaultCause() {
        reportedCause = kNoneYet;
        reportedFault = 0;
        SetFaultCallback(noteCause);
    }

    ~FaultCause() override {
        closeCamera();
        SetFaultCallback(nullptr);
    }

    const ScratchFolder folder_;
};

TEST_F(FaultCause, OfAnUnpluggedCameraIsTheUnplugging) {
    watchFrames();
    openSmall(kMjpegFormat);
    waitForFrames(1);
    bed_.unplug(earlier_);
    EXPECT_EQ(awaitedCause(), DOCCAM_CAUSE_UNPLUGGED);
    EXPECT_EQ(reportedFault, DOCCAM_FAULT_STREAM_ENDED);
}

TEST_F(FaultCause, OfARequestThatFailsIsTheDriver) {
    addCallFault("VIDIOC_DQBUF", EIO, 2);
    openSmall(kMjpegFormat);
    EXPECT_EQ(awaitedCause(), DOCCAM_CAUSE_DRIVER);
}

TEST_F(FaultCause, OfABufferThatDoesNotExistIsTheDriver) {
    addFrameFault(FaultKind::kIndex, 2, 99);
    openSmall(kMjpegFormat);
    EXPECT_EQ(awaitedCause(), DOCCAM_CAUSE_DRIVER);
}

TEST_F(FaultCause, OfAnUnknownPixelFormatIsTheFormat) {
    bed_.remove(earlier_);
    virtualcam::CameraDescription camera = secondCamera();
    camera.formats = {{virtualcam::fourcc("GREY"), {{640, 480}}, {}, {30}}};
    bed_.add(camera);
    getDeviceCount();
    state().discovery.yuvWidthList = {640};
    state().discovery.yuvHeightList = {480};
    openSmall(kYuyvFormat);
    EXPECT_EQ(awaitedCause(), DOCCAM_CAUSE_PIXEL_FORMAT);
}

TEST_F(FaultCause, OfAStillThatCannotBeSavedIsItsFile) {
    openSmall(kMjpegFormat);
    for (const char* name : {"missing/still.jpg", "missing/still.png", "missing/still.pdf"}) {
        reportedCause = kNoneYet;
        takeStill(folder_.file(name));
        EXPECT_EQ(reportedFault, DOCCAM_FAULT_STILL) << name;
        EXPECT_EQ(reportedCause, DOCCAM_CAUSE_NOT_WRITTEN) << name;
    }
}

TEST_F(FaultCause, OfAStillWithoutATypeIsNotItsFile) {
    openSmall(kMjpegFormat);
    takeStill(folder_.file("still.foo"));
    EXPECT_EQ(reportedFault, DOCCAM_FAULT_STILL);
    EXPECT_EQ(reportedCause, DOCCAM_CAUSE_OTHER);
}

TEST_F(FaultCause, OfADocumentInAFaultCallbackEndsWithItsCallback) {
    static std::atomic<int> causeAfterwards{0};
    static std::string document;
    document = folder_.file("missing/document.pdf");
    SetFaultCallback([](int fault, const char* message) {
        noteCause(fault, message);
        if (fault == DOCCAM_FAULT_STILL) {
            pdf_start(document.c_str());
            pdf_end();
            causeAfterwards = doccam_fault_cause();
        }
    });
    openSmall(kMjpegFormat);
    takeStill(folder_.file("missing/still.png"));
    EXPECT_EQ(reportedFault, DOCCAM_FAULT_DOCUMENT);
    EXPECT_EQ(reportedCause, DOCCAM_CAUSE_OTHER);
    EXPECT_EQ(causeAfterwards, DOCCAM_CAUSE_NOT_WRITTEN);
}

TEST_F(FaultCause, IsNoneOutsideAFaultCallback) {
    static std::atomic<int> causeOfAFrame{kNoneYet};
    SetFaultCallback([](int fault, const char* message) {
        noteCause(fault, message);
        throw std::runtime_error("no log");
    });
    SetDataCallback([](unsigned char*, int, int) {
        causeOfAFrame = doccam_fault_cause();
        throw std::runtime_error("host trouble");
    });
    openSmall(kMjpegFormat);
    EXPECT_EQ(awaitedCause(), DOCCAM_CAUSE_OTHER);
    closeCamera();
    EXPECT_EQ(causeOfAFrame, DOCCAM_CAUSE_NONE);
    EXPECT_EQ(doccam_fault_cause(), DOCCAM_CAUSE_NONE);
}

} // namespace
} // namespace doccam::test
