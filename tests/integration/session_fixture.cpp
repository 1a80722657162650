#include "integration/session_fixture.h"

#include "state/library_state.h"

#include <doccam/doccam.hpp>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

namespace doccam::test {
namespace {

std::atomic<int> seen{0};
std::atomic<bool> ended{false};
std::atomic<unsigned> changes{0}; // incremented after each change of the two above
std::mutex lastMutex;
cv::Mat last;

void notifyWaiters() {
    changes.fetch_add(1);
    changes.notify_all();
}

void onFrame(unsigned char* pixels, int width, int height) {
    {
        const std::lock_guard lock(lastMutex);
        cv::Mat(height, width, CV_8UC3, pixels).copyTo(last);
    }
    seen.fetch_add(1);
    notifyWaiters();
}

} // namespace

void resetLibrary() {
    LibraryState& library = state();
    library.discovery.deviceCount = 0;
    for (auto* list : {&library.discovery.formatList, &library.discovery.yuvWidthList,
                       &library.discovery.yuvHeightList, &library.discovery.mjpegWidthList,
                       &library.discovery.mjpegHeightList, &library.discovery.otherfmtWidthList,
                       &library.discovery.otherfmtHeightList}) {
        list->clear();
    }
    for (auto* setting : {&library.settings.cutType, &library.settings.colorMode,
                          &library.settings.fileFormat, &library.settings.isDelBlackedge,
                          &library.settings.isDelBcakColor, &library.settings.RotateAngle,
                          &library.settings.RotateFlag, &library.settings.pageEngine}) {
        *setting = 0;
    }
    std::fill_n(library.session.video_buffer_ptr.get(), kBufferCount, nullptr);
    library.settings.jpgQuality = 85;
    library.settings.CameraFormat = 1;
    library.session.isShootPhoto = false;
    library.session.isInsert1000M = false;
    library.session.IsRecogBarQr = kNoCodeRequest;
    library.session.qctrl = {};
    library.session.ctrl = {};
    library.settings.pGetVideoStream = nullptr;
    library.settings.pGetVideoWebStream = nullptr;
}

void watchFrames() {
    seen = 0;
    ended = false;
    SetDataCallback(onFrame);
}

bool waitForFrames(int count) {
    for (unsigned now = changes; seen < count && !ended; now = changes) {
        changes.wait(now);
    }
    return seen >= count;
}

void notifyStreamEnded() {
    ended = true;
    notifyWaiters();
}

int framesSeen() {
    return seen;
}

void waitForStreamOff() {
    while (virtualcam::callCount("STREAMOFF") == 0) {
        std::this_thread::yield();
    }
}

cv::Mat lastSeen() {
    const std::lock_guard lock(lastMutex);
    return last.clone();
}

SessionTest::SessionTest(const Formats& formats)
  : CameraTest(formats) {
    resetLibrary();
    virtualcam::setSleepScale(0.01);
}

SessionTest::~SessionTest() {
    virtualcam::setSleepScale(0.01);
    if (state().session.cam_fd.get() != UniqueFd::kNone || state().session.bKeep ||
        state().session.streamingThread) {
        closeCamera();
    }
    closeCamera();
}

void SessionTest::openSmall(int format) {
    SetVideoFormat(format);
    ASSERT_EQ(openCamera(kIndexOfEarlier, 640, 480), 0);
}

void SessionTest::takeStill(const std::string& path) {
    EXPECT_EQ(captureImage(path.c_str()), 0);
    while (state().session.isShootPhoto || state().session.reportingFaults) {
        std::this_thread::yield();
    }
}

void SessionTest::addCallFault(const std::string& request, int error, int at) {
    virtualcam::Fault fault;
    fault.kind = virtualcam::FaultKind::kCall;
    fault.request = request;
    fault.error = error;
    fault.at = at;
    virtualcam::addFault(earlier_, fault);
}

void SessionTest::addFrameFault(virtualcam::FaultKind kind, int at, int value) {
    virtualcam::Fault fault;
    fault.kind = kind;
    fault.at = at;
    fault.value = value;
    virtualcam::addFault(earlier_, fault);
}

} // namespace doccam::test
