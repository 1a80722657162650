// Closing a session: its order and its waits are what hosts and cameras are used to.
#include "api/library_state.h"
#include "capture/driver_buffers.h"
#include "capture/session_end.h"

#include <doccam/doccam.hpp>

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

namespace doccam {
namespace {

constexpr int kStopWait = 550;
constexpr int kNodeWait = 100;

// How long a callback may hold up the close. Long enough for any callback that is merely slow.
constexpr std::chrono::seconds kPatience{2};

void switchStreamOff() {
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    ioctl(state().cam_fd, VIDIOC_STREAMOFF, &type);
}

void closeNode() {
    LibraryState& library = state();
    Sleep(kNodeWait);
    close(library.cam_fd);
    library.cam_fd = kNoDescriptor;
    Sleep(kNodeWait);
}

void releaseImage(cv::Mat& image, const char* line) {
    if (!image.empty()) {
        image.release();
        std::puts(line);
    }
}

void releasePreviewBuffer() {
    if (state().WEB_BUF.exchange(nullptr) != nullptr) {
        state().previewPixels.reset();
        std::puts(">>>>>>>>>>>>> closeCamera 04!");
    }
}

// Ends a session that the host left open when the library goes away: no thread may run on state
// that is being destroyed, or on code that is being unloaded.
struct UnloadGuard {
    UnloadGuard() { state(); }

    ~UnloadGuard() {
        if (state().streamingThread) {
            state().bKeep = false;
            switchStreamOff();
            retireStreamingThread();
        }
        av_decode_deinit();
    }

    UnloadGuard(const UnloadGuard&) = delete;
    UnloadGuard& operator=(const UnloadGuard&) = delete;
};

const UnloadGuard unloadGuard;

} // namespace

ThreadEnd retireStreamingThread() {
    LibraryState& library = state();
    // Left in its place until the thread has ended: the thread takes its own reference from there.
    const std::shared_ptr<StreamingThread>& thread = library.streamingThread;
    if (!thread) {
        return ThreadEnd::kEnded;
    }
    thread->retire(kPatience);
    if (!thread->abandoned()) {
        library.streamingThread.reset();
        return ThreadEnd::kEnded;
    }
    for (const cv::Mat& image : {library.srcimage, library.roimage, library.zoomimage}) {
        thread->keepAlive(image);
    }
    thread->keepAlive(library.previewPixels);
    library.streamingThread.reset();
    return ThreadEnd::kGivenUp;
}

} // namespace doccam

int closeCamera() {
    using namespace doccam;
    state().bKeep = false;
    Sleep(kStopWait);
    switchStreamOff();
    retireStreamingThread();
    unmapDriverBuffers();
    closeNode();
    releaseImage(state().srcimage, ">>>>>>>>>>>>> closeCamera 01!");
    releaseImage(state().roimage, ">>>>>>>>>>>>> closeCamera 02!");
    releaseImage(state().zoomimage, ">>>>>>>>>>>>> closeCamera 03!");
    releasePreviewBuffer();
    av_decode_deinit();
    return 0;
}
