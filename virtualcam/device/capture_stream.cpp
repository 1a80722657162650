// The capture node's buffers and its stream.
#include "device/capture_device.h"
#include "device/damage.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace doccam::virtualcam {

namespace {

timeval toTimeval(CaptureDevice::Time time) {
    const auto whole =
        std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch()).count();
    return {static_cast<time_t>(whole / 1000000), static_cast<suseconds_t>(whole % 1000000)};
}

bool take(std::vector<Fault>& faults, FaultKind kind) {
    return std::erase_if(faults, [&](const Fault& fault) { return fault.kind == kind; }) > 0;
}

bool damagesPicture(const Fault& fault) {
    return fault.kind != FaultKind::kIndex;
}

} // namespace

std::optional<int> CaptureDevice::answerStreaming(ClientId client, std::uint32_t request,
                                                  void* argument) {
    if (request == VIDIOC_REQBUFS) {
        return requestBuffers(client, *static_cast<v4l2_requestbuffers*>(argument));
    }
    const bool known = request == VIDIOC_QUERYBUF || request == VIDIOC_QBUF ||
                       request == VIDIOC_STREAMON || request == VIDIOC_STREAMOFF;
    if (!known) {
        return std::nullopt;
    }
    if (owner_ != client) {
        return EBUSY;
    }
    switch (request) {
    case VIDIOC_QUERYBUF:
        return buffers_.describe(*static_cast<v4l2_buffer*>(argument));
    case VIDIOC_QBUF: {
        const int error = buffers_.enqueue(*static_cast<v4l2_buffer*>(argument));
        changed_.notify_all();
        return error;
    }
    case VIDIOC_STREAMON:
        return streamOn(*static_cast<int*>(argument));
    default:
        return streamOff(*static_cast<int*>(argument));
    }
}

int CaptureDevice::requestBuffers(ClientId client, v4l2_requestbuffers& request) {
    if (request.type != V4L2_BUF_TYPE_VIDEO_CAPTURE || request.memory != V4L2_MEMORY_MMAP) {
        return EINVAL;
    }
    if (const int error = acquire(client); error != 0) {
        return error;
    }
    if (streaming_) {
        return EBUSY;
    }
    request.flags = 0;
    std::fill(std::begin(request.reserved), std::end(request.reserved), __u8{0});
    request.capabilities = V4L2_BUF_CAP_SUPPORTS_MMAP | V4L2_BUF_CAP_SUPPORTS_ORPHANED_BUFS;
    request.count = faults_.granted(std::min(request.count, BufferQueue::kMaximumBuffers));
    if (request.count == 0) {
        owner_ = 0;
    }
    return buffers_.allocate(request.count, format_.bufferBytes);
}

int CaptureDevice::streamOn(int type) {
    if (type != V4L2_BUF_TYPE_VIDEO_CAPTURE || buffers_.empty()) {
        return EINVAL;
    }
    if (!streaming_) {
        streaming_ = true;
        ++stream_;
        clock_.start(std::chrono::steady_clock::now(), interval());
    }
    return 0;
}

int CaptureDevice::streamOff(int type) {
    if (type != V4L2_BUF_TYPE_VIDEO_CAPTURE) {
        return EINVAL;
    }
    stopStream();
    return 0;
}

void CaptureDevice::stopStream() {
    streaming_ = false;
    ++stream_;
    dueFaults_.reset();
    buffers_.returnAll();
    changed_.notify_all();
}

int CaptureDevice::dequeue(Lock& lock, v4l2_buffer& record, bool nonBlocking) {
    if (record.type != V4L2_BUF_TYPE_VIDEO_CAPTURE || record.memory != V4L2_MEMORY_MMAP) {
        return EINVAL;
    }
    const int error = awaitFrame(lock, nonBlocking);
    return error != 0 ? error : deliver(lock, record);
}

// The end of the stream, also by unplugging, ends the wait with EINVAL.
int CaptureDevice::awaitFrame(Lock& lock, bool nonBlocking) {
    const std::uint32_t stream = stream_;
    while (streaming_ && stream_ == stream) {
        if (frameIsDue() && noteDueFrame()) {
            return 0;
        }
        if (!streaming_) {
            break;
        }
        if (nonBlocking) {
            return EAGAIN;
        }
        ++waiting_;
        if (stalled_ || buffers_.queued() == 0) {
            changed_.wait(lock);
        } else {
            changed_.wait_until(lock, clock_.due());
        }
        --waiting_;
    }
    return EINVAL;
}

bool CaptureDevice::frameIsDue() const {
    return !stalled_ && buffers_.queued() > 0 && std::chrono::steady_clock::now() >= clock_.due();
}

// Fetches the due frame's faults, once; false when the frame does not come after all.
bool CaptureDevice::noteDueFrame() {
    if (!dueFaults_) {
        clock_.skipMissed(std::chrono::steady_clock::now(), buffers_.queued());
        dueFaults_ = faults_.noteFrame();
    }
    if (take(*dueFaults_, FaultKind::kUnplug)) {
        unplugLocked();
        return false;
    }
    stalled_ = take(*dueFaults_, FaultKind::kStall);
    return !stalled_;
}

int CaptureDevice::deliver(Lock& lock, v4l2_buffer& record) {
    const std::uint32_t stream = stream_;
    const std::uint32_t index = buffers_.takeQueued();
    const std::vector<Fault> faults = *std::exchange(dueFaults_, std::nullopt);
    const PictureFormat format = format_;
    const std::uint32_t number = clock_.number();
    const std::uint32_t picture = clock_.delivered();
    const Time due = clock_.due();
    const Time now = std::chrono::steady_clock::now();
    longestWait_ = std::max(longestWait_, now - due);
    clock_.advance(now);
    publishReadiness();

    // Drawing is slow; the stream may be switched off meanwhile.
    lock.unlock();
    const FrameBytes frame = makeFrame(*source_, format, picture, faults);
    lock.lock();
    if (stream_ != stream) {
        return EINVAL;
    }
    const bool sound = std::none_of(faults.begin(), faults.end(), damagesPicture);
    buffers_.memory()->fill(index, *frame, sound && format.pixelFormat == kMjpeg);
    last_ = DeliveredFrame{number, format.pixelFormat, format.size, frame};

    v4l2_buffer contents{};
    contents.bytesused =
        static_cast<std::uint32_t>(std::min<std::size_t>(frame->size(), format.bufferBytes));
    contents.field = V4L2_FIELD_NONE;
    contents.sequence = number;
    contents.timestamp = toTimeval(due);
    buffers_.deliver(index, contents);
    record.index = index;
    buffers_.describe(record);
    for (const Fault& fault : faults) {
        if (fault.kind == FaultKind::kIndex) {
            record.index = static_cast<std::uint32_t>(fault.value);
        }
    }
    return 0;
}

} // namespace doccam::virtualcam
