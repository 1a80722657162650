#include "capture/grab_frame.h"

#include "base/pause.h"
#include "base/shared_work.h"
#include "state/session.h"

#include <poll.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace doccam {

bool hasFilledBuffer(int descriptor) {
    pollfd filled{.fd = descriptor, .events = POLLIN, .revents = 0};
    return poll(&filled, 1, 0) == 1 && filled.revents == POLLIN;
}

DequeuedBuffer dequeueBuffer(int descriptor) {
    DequeuedBuffer dequeued;
    dequeued.record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    dequeued.record.memory = V4L2_MEMORY_MMAP;
    dequeued.record.index = record::kBufferCount;
    if (ioctl(descriptor, VIDIOC_DQBUF, &dequeued.record) != 0) {
        dequeued.error = errno;
    }
    return dequeued;
}

namespace {

// A driver ends its streams before it takes its nodes away.
bool isUnplugged(int descriptor) {
    constexpr int kMaximumAsks = 20;
    constexpr int kPause = 10;
    for (int asks = 0; asks < kMaximumAsks; ++asks) {
        v4l2_capability capability{};
        if (ioctl(descriptor, VIDIOC_QUERYCAP, &capability) != 0 && errno == ENODEV) {
            return true;
        }
        pauseFor(kPause);
    }
    return false;
}

} // namespace

Fault endOfStream(int result, int descriptor) {
    const auto fault = [](DoccamCause cause, const char* message) {
        return Fault{DOCCAM_FAULT_STREAM_ENDED, cause, message};
    };
    if (result == kGrabImpossibleBuffer) {
        return fault(DOCCAM_CAUSE_DRIVER, "the driver named a buffer that does not exist");
    }
    return isUnplugged(descriptor)
               ? fault(DOCCAM_CAUSE_UNPLUGGED, "the camera was unplugged")
               : fault(DOCCAM_CAUSE_DRIVER, "the driver failed to hand over a frame");
}

GrabbedFrame takeFrame(const record::Session& session, DequeuedBuffer dequeued,
                       std::span<unsigned char> frame) {
    using enum GrabbedFrame::Failure;
    v4l2_buffer& record = dequeued.record;
    if (dequeued.error != 0) {
        return {kDequeue, dequeued.error};
    }
    if (record.index >= static_cast<unsigned>(session.buffer_count) ||
        session.mappedLength[record.index] == 0) {
        return {kBufferIndex, static_cast<int>(record.index)};
    }
    // A driver may report a length past what was mapped or what a frame can have.
    const std::size_t copied = std::min({static_cast<std::size_t>(record.length),
                                         session.mappedLength[record.index], frame.size()});
    copyInParallel({session.video_buffer_ptr[record.index], copied}, frame.data());
    GrabbedFrame grabbed{.length = static_cast<int>(copied),
                         .filled =
                             static_cast<int>(record.bytesused <= copied ? record.bytesused : 0)};
    if (ioctl(session.cam_fd.get(), VIDIOC_QBUF, &record) != 0) {
        grabbed.failure = kRequeue;
        grabbed.detail = errno;
    }
    return grabbed;
}

int logGrabFailure(const GrabbedFrame& grabbed) {
    using enum GrabbedFrame::Failure;
    if (grabbed.failure == kNone) {
        return 0;
    }
    if (grabbed.failure == kBufferIndex) {
        std::printf("invalid buffer index: %d", grabbed.detail);
        return kGrabImpossibleBuffer;
    }
    std::printf("ioctl(%s) failed %d(%s)",
                grabbed.failure == kDequeue ? "VIDIOC_DQBUF" : "VIDIOC_QBUF", grabbed.detail,
                strerror(grabbed.detail));
    return kGrabFailed;
}

int grabFrame(const record::Session& session, unsigned char* buffer, int* length) {
    const auto bytes = static_cast<std::size_t>(std::max(session.nSize.load(), 0));
    const GrabbedFrame grabbed =
        takeFrame(session, dequeueBuffer(session.cam_fd.get()), {buffer, bytes});
    if (grabbed.failure == GrabbedFrame::Failure::kNone ||
        grabbed.failure == GrabbedFrame::Failure::kRequeue) {
        *length = grabbed.length;
    }
    return logGrabFailure(grabbed);
}

} // namespace doccam
