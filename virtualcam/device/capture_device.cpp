#include "device/capture_device.h"

#include "device/request_names.h"

#include <poll.h>

#include <cerrno>
#include <utility>

namespace doccam::virtualcam {

CaptureDevice::CaptureDevice(const CameraDescription& description, Identity identity,
                             std::shared_ptr<FrameSource> source)
  : identity_(std::move(identity))
  , source_(std::move(source))
  , offer_(description.formats.empty() ? documentCameraFormats() : description.formats)
  , controls_(description.controls.empty() ? documentCameraControls() : description.controls,
              description.strictControls)
  , intervalMs_(description.intervalMs)
  , format_(offer_.nearest(0, {0, 0}))
  , frameRate_(offer_.nearestRate(format_.pixelFormat, {0, 0})) {
    for (const Fault& fault : description.faults) {
        faults_.add(fault);
        publishReadiness();
    }
}

void CaptureDevice::attach(ClientId client, ReadyObserver observer) {
    const Lock lock(mutex_);
    observer(readyTime());
    observers_[client] = std::move(observer);
}

void CaptureDevice::detach(ClientId client) {
    const Lock lock(mutex_);
    observers_.erase(client);
    if (owner_ == client) {
        stopStream();
        buffers_.allocate(0, 0);
        owner_ = 0;
        publishReadiness();
    }
}

int CaptureDevice::request(ClientId client, std::uint32_t request, void* argument,
                           bool nonBlocking) {
    Lock lock(mutex_);
    if (unplugged_) {
        return ENODEV;
    }
    if (const int error = faults_.noteCall(requestName(request)); error != 0) {
        return error;
    }
    const int error = dispatch(lock, client, request, argument, nonBlocking);
    publishReadiness();
    return error;
}

int CaptureDevice::dispatch(Lock& lock, ClientId client, std::uint32_t request, void* argument,
                            bool nonBlocking) {
    if (argument == nullptr) {
        return isKnownRequest(request) ? EFAULT : ENOTTY;
    }
    if (const auto answer = answerIdentity(identity_, false, request, argument)) {
        return *answer;
    }
    if (const auto answer = answerFormat(client, request, argument)) {
        return *answer;
    }
    if (const auto answer = answerControl(request, argument)) {
        return *answer;
    }
    if (request == VIDIOC_DQBUF) {
        return owner_ != client ? EBUSY
                                : dequeue(lock, *static_cast<v4l2_buffer*>(argument), nonBlocking);
    }
    return answerStreaming(client, request, argument).value_or(ENOTTY);
}

std::optional<int> CaptureDevice::answerControl(std::uint32_t request, void* argument) {
    switch (request) {
    case VIDIOC_QUERYCTRL:
        return controls_.query(*static_cast<v4l2_queryctrl*>(argument));
    case VIDIOC_QUERY_EXT_CTRL:
        return controls_.query(*static_cast<v4l2_query_ext_ctrl*>(argument));
    case VIDIOC_QUERYMENU:
        return EINVAL;
    case VIDIOC_G_CTRL:
        return controls_.get(*static_cast<v4l2_control*>(argument));
    case VIDIOC_S_CTRL:
        return controls_.set(*static_cast<v4l2_control*>(argument));
    case VIDIOC_G_EXT_CTRLS:
        return controls_.getAll(*static_cast<v4l2_ext_controls*>(argument));
    case VIDIOC_TRY_EXT_CTRLS:
        return controls_.setAll(*static_cast<v4l2_ext_controls*>(argument), false);
    case VIDIOC_S_EXT_CTRLS:
        return controls_.setAll(*static_cast<v4l2_ext_controls*>(argument), true);
    default:
        return std::nullopt;
    }
}

int CaptureDevice::map(std::size_t offset, std::size_t length,
                       std::shared_ptr<BufferMemory>& memory) {
    const Lock lock(mutex_);
    if (unplugged_) {
        return ENODEV;
    }
    if (buffers_.empty() || length > buffers_.memory()->stride() || !buffers_.noteMapping(offset)) {
        return EINVAL;
    }
    memory = buffers_.memory();
    return 0;
}

short CaptureDevice::pollErrors() const {
    const Lock lock(mutex_);
    if (unplugged_) {
        return POLLERR | POLLHUP;
    }
    return streaming_ ? 0 : POLLERR;
}

void CaptureDevice::unplug() {
    const Lock lock(mutex_);
    unplugLocked();
    publishReadiness();
}

void CaptureDevice::unplugLocked() {
    unplugged_ = true;
    stopStream();
}

bool CaptureDevice::unplugged() const {
    const Lock lock(mutex_);
    return unplugged_;
}

void CaptureDevice::stall() {
    const Lock lock(mutex_);
    stalled_ = true;
    publishReadiness();
}

void CaptureDevice::resume() {
    const Lock lock(mutex_);
    // Pollers are not notified of a withheld frame, and so have not dequeued it.
    if (!stalled_ && !dueFaults_) {
        faults_.forgetNextStall();
    }
    stalled_ = false;
    changed_.notify_all();
    publishReadiness();
}

void CaptureDevice::setInterval(int milliseconds) {
    const Lock lock(mutex_);
    intervalMs_ = milliseconds;
    clock_.setInterval(std::chrono::steady_clock::now(), interval());
    changed_.notify_all();
    publishReadiness();
}

void CaptureDevice::addFault(const Fault& fault) {
    const Lock lock(mutex_);
    faults_.add(fault);
    publishReadiness();
}

void CaptureDevice::clearFaults() {
    const Lock lock(mutex_);
    faults_.clear();
    publishReadiness();
}

int CaptureDevice::noteCall(const std::string& name) {
    const Lock lock(mutex_);
    return faults_.noteCall(name);
}

bool CaptureDevice::streaming() const {
    const Lock lock(mutex_);
    return streaming_;
}

bool CaptureDevice::waitedFor() const {
    const Lock lock(mutex_);
    return waiting_ > 0;
}

std::optional<DeliveredFrame> CaptureDevice::lastFrame() const {
    const Lock lock(mutex_);
    return last_;
}

FrameCount CaptureDevice::frameCount() {
    const std::lock_guard lock(mutex_);
    const auto wait = std::exchange(longestWait_, {});
    return {.sent = clock_.number(),
            .missed = clock_.number() - clock_.delivered(),
            .longestWait = static_cast<int>(
                std::chrono::duration_cast<std::chrono::milliseconds>(wait).count())};
}

std::optional<int> CaptureDevice::control(std::uint32_t id) const {
    const Lock lock(mutex_);
    return controls_.value(id);
}

int CaptureDevice::setControl(std::uint32_t id, int value) {
    const Lock lock(mutex_);
    v4l2_control record{id, value};
    return controls_.set(record);
}

std::optional<CaptureDevice::Time> CaptureDevice::readyTime() const {
    if (!streaming_) {
        return Time{};
    }
    const bool stalls = stalled_ || (!dueFaults_ && faults_.stallsNextFrame());
    return stalls || buffers_.queued() == 0 ? std::nullopt : std::optional(clock_.due());
}

void CaptureDevice::publishReadiness() {
    const std::optional<Time> ready = readyTime();
    for (const auto& [client, observer] : observers_) {
        observer(ready);
    }
}

} // namespace doccam::virtualcam
