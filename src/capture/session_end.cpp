// Closing a session, in a fixed order with fixed waits.
#include "capture/session_end.h"

#include "base/pause.h"
#include "capture/driver_buffers.h"
#include "decode/mjpeg_frames.h"
#include "state/library_state.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>

namespace doccam {
namespace {

constexpr int kStopWait = 550;
constexpr int kNodeWait = 100;

// How long a callback, or the writing of a still, may hold up the close. Long enough for any that
// is merely slow.
constexpr StreamingThread::Patience kPatience{.inCall = std::chrono::seconds(2),
                                              .inWriting = std::chrono::seconds(9)};

// In a forked child the descriptor is the parent's too, and the stream is the parent's alone.
void switchStreamOff() {
    if (state().session.sessionProcess != kNoProcess &&
        state().session.sessionProcess != getpid()) {
        return;
    }
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    ioctl(state().session.cam_fd, VIDIOC_STREAMOFF, &type);
}

void closeNode() {
    LibraryState& library = state();
    pauseFor(kNodeWait);
    close(library.session.cam_fd);
    library.session.cam_fd = kNoDescriptor;
    pauseFor(kNodeWait);
}

void releaseImage(cv::Mat& image, const char* line) {
    if (!image.empty()) {
        image.release();
        std::puts(line);
    }
}

void releasePreviewBuffer() {
    if (state().view.WEB_BUF.exchange(nullptr) != nullptr) {
        state().view.previewPixels.reset();
        std::puts(">>>>>>>>>>>>> closeCamera 04!");
    }
}

// The process of the caller that ends the session. A child forked meanwhile has no such caller.
std::atomic<pid_t> ending{kNoProcess};

bool claimEnding() {
    const pid_t self = getpid();
    for (pid_t holder = ending.load(std::memory_order_acquire); holder != self;) {
        if (ending.compare_exchange_weak(holder, self, std::memory_order_acq_rel)) {
            return true;
        }
    }
    return false;
}

// Ends a session that the host left open when the process exits: no thread may run into the
// destruction of what it uses. A forked child leaves its parent's camera alone.
struct ExitGuard {
    ExitGuard() { state(); }

    ~ExitGuard() {
        const EndingClaim claim(EndingClaim::IfTaken::kGoWithout);
        const auto& thread = state().session.streamingThread;
        if (claim.granted() && thread && thread->ofThisProcess()) {
            state().session.bKeep = false;
            switchStreamOff();
            retireStreamingThread();
            releaseDecoder();
        }
    }

    ExitGuard(const ExitGuard&) = delete;
    ExitGuard& operator=(const ExitGuard&) = delete;
};

const ExitGuard exitGuard;

} // namespace

EndingClaim::EndingClaim(IfTaken answer)
  : granted_(claimEnding()) {
    while (!granted_ && answer == IfTaken::kWait) {
        waitUntilFree();
        granted_ = claimEnding();
    }
}

EndingClaim::~EndingClaim() {
    if (granted_) {
        ending.store(kNoProcess, std::memory_order_release);
        ending.notify_all();
    }
}

void EndingClaim::waitUntilFree() {
    ending.wait(getpid(), std::memory_order_acquire);
}

void closeSession() {
    state().session.bKeep = false;
    pauseFor(kStopWait);
    const EndingClaim claim(EndingClaim::IfTaken::kGoWithout);
    if (!claim.granted()) {
        // The other caller may be waiting for the callback that calls here.
        if (!StreamingThread::isCurrentThread()) {
            EndingClaim::waitUntilFree();
        }
        return;
    }
    switchStreamOff();
    retireStreamingThread();
    unmapDriverBuffers();
    closeNode();
    releaseImage(state().session.srcimage, ">>>>>>>>>>>>> closeCamera 01!");
    releaseImage(state().session.roimage, ">>>>>>>>>>>>> closeCamera 02!");
    releaseImage(state().session.zoomimage, ">>>>>>>>>>>>> closeCamera 03!");
    releasePreviewBuffer();
    releaseDecoder();
}

ThreadEnd retireStreamingThread() {
    LibraryState& library = state();
    const std::shared_ptr<StreamingThread> thread = std::move(library.session.streamingThread);
    if (!thread) {
        return ThreadEnd::kEnded;
    }
    thread->retire(kPatience);
    if (!thread->abandoned()) {
        return ThreadEnd::kEnded;
    }
    for (const cv::Mat& image :
         {library.session.srcimage, library.session.roimage, library.session.zoomimage}) {
        thread->keepAlive(image);
    }
    thread->keepAlive(library.view.previewPixels);
    if (thread->abandonedInWriting()) {
        // It is still being served, and not for the next session to serve again.
        library.session.isShootPhoto.store(false, std::memory_order_release);
    }
    return ThreadEnd::kGivenUp;
}

} // namespace doccam
