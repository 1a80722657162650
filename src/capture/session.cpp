#include "capture/session.h"

#include "base/pause.h"
#include "capture/driver_buffers.h"
#include "capture/frame_loop.h"
#include "capture/streaming_thread.h"
#include "decode/mjpeg_frames.h"
#include "state/library_state.h"

#include <pthread.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <mutex>
#include <new>
#include <utility>

namespace doccam {
namespace {

constexpr int kStopWait = 550;
constexpr int kNodeWait = 100;

// How long a callback or the writing of a still, which may merely be slow, delays the close.
constexpr StreamingThread::Patience kPatience{.inCall = std::chrono::seconds(2),
                                              .inWriting = std::chrono::seconds(9)};

// Held by the one caller that ends the session: a host and its callback may both close the camera.
std::mutex ending;

// A forked child lacks the thread that could unlock it, so there it is constructed anew.
[[maybe_unused]] const int unlockedInChildren =
    pthread_atfork(nullptr, nullptr, [] { new (&ending) std::mutex; });

// In a forked child the descriptor is the parent's too, and the stream is the parent's alone.
void switchStreamOff(const record::Session& session) {
    if (session.sessionProcess != kNoProcess && session.sessionProcess != getpid()) {
        return;
    }
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    ioctl(session.cam_fd.get(), VIDIOC_STREAMOFF, &type);
}

// Needs ending to be held. False when the thread had to be given up.
bool endStreaming(record::Session& session) {
    const std::shared_ptr<StreamingThread> thread = std::move(session.streamingThread);
    if (!thread) {
        return true;
    }
    thread->stop(kPatience);
    if (!thread->abandoned()) {
        return true;
    }
    if (thread->abandonedInWriting()) {
        // This still is being written; the next session must not take it again.
        session.isShootPhoto.store(false, std::memory_order_release);
    }
    session.reportingFaults.store(false, std::memory_order_release);
    return false;
}

void closeNode(record::Session& session) {
    pauseFor(kNodeWait);
    session.cam_fd.reset();
    pauseFor(kNodeWait);
}

// A thread that was given up keeps the old frames. True when there was a preview buffer.
bool replaceFrames(LibraryState& library) {
    auto frames = std::make_shared<Frames>();
    const std::lock_guard lock(library.session.framesMutex);
    library.session.frames.swap(frames);
    return library.view.WEB_BUF.exchange(nullptr) != nullptr;
}

void releaseFrames(LibraryState& library) {
    const auto report = [](bool released, const char* line) {
        if (released) {
            std::puts(line);
        }
    };
    const Frames& frames = *library.session.frames;
    report(!frames.srcimage.empty(), ">>>>>>>>>>>>> closeCamera 01!");
    report(!frames.roimage.empty(), ">>>>>>>>>>>>> closeCamera 02!");
    report(!frames.zoomimage.empty(), ">>>>>>>>>>>>> closeCamera 03!");
    report(replaceFrames(library), ">>>>>>>>>>>>> closeCamera 04!");
}

// At process exit ends a session left open, before what its thread uses is destroyed; not in a
// forked child, whose parent has the camera.
struct ExitGuard {
    ExitGuard() { state(); }

    ~ExitGuard() {
        std::unique_lock lock(ending, std::try_to_lock);
        if (!lock && !StreamingThread::isCurrentThread()) {
            lock.lock();
        }
        record::Session& session = state().session;
        if (lock && session.streamingThread && session.streamingThread->ofThisProcess()) {
            session.bKeep = false;
            switchStreamOff(session);
            endStreaming(session);
            releaseDecoder(session.pdecode);
        }
    }

    ExitGuard(const ExitGuard&) = delete;
    ExitGuard& operator=(const ExitGuard&) = delete;
};

const ExitGuard exitGuard;

} // namespace

void setGrabSize(record::Session& session, FrameSize size) {
    constexpr auto kRelaxed = std::memory_order_relaxed;
    session.nWidth.store(size.width, kRelaxed);
    session.nHeight.store(size.height, kRelaxed);
    const auto bytes =
        static_cast<std::uint32_t>(size.width) * static_cast<std::uint32_t>(size.height) * 3U;
    session.nSize.store(static_cast<int>(bytes), kRelaxed);
}

void startStreaming(record::Session& session) {
    const auto thread = std::make_shared<StreamingThread>(session.frames);
    session.streamingThread = thread;
    session.bKeep = true;
    if (!thread->start(streamFrames)) {
        std::puts("create thread error");
    }
}

void streamOnThisThread(const record::Session& session) {
    std::make_shared<StreamingThread>(session.frames)->run(streamFrames);
}

void closeSession(LibraryState& library) {
    record::Session& session = library.session;
    session.bKeep = false;
    pauseFor(kStopWait);
    std::unique_lock lock(ending, std::try_to_lock);
    if (!lock) {
        // The other caller may be waiting for the callback that calls here.
        if (!StreamingThread::isCurrentThread()) {
            lock.lock();
        }
        return;
    }
    switchStreamOff(session);
    endStreaming(session);
    unmapDriverBuffers(session);
    closeNode(session);
    releaseDecoder(session.pdecode);
    releaseFrames(library);
}

bool releaseNode(LibraryState& library, const char* caller) {
    if (!library.session.cam_fd.isOpen()) {
        return false;
    }
    const bool streaming = library.session.bKeep;
    if (streaming) {
        closeSession(library);
    } else {
        library.session.cam_fd.reset();
    }
    std::printf("---------%s closeCamera %s---------\n", caller, streaming ? "BB" : "AA");
    return true;
}

void endLostSession(LibraryState& library) {
    const std::lock_guard lock(ending);
    if (!endStreaming(library.session)) {
        replaceFrames(library);
    }
    unmapLostBuffers(library.session);
}

} // namespace doccam
