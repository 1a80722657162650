#include "vm/camera/usb_camera.h"

#include "vm/camera/descriptors.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace doccam::vm {
namespace {

enum Standard : std::uint8_t {
    kGetStatus = 0x00,
    kGetDescriptor = 0x06,
    kSetInterface = 0x0b,
};

enum DescriptorType { kDevice = 1, kConfiguration = 2, kString = 3 };

constexpr std::uint8_t kKindOfRequest = 0x60;
constexpr std::uint8_t kOfClass = 0x20;

bool ofClass(const Setup& setup) {
    return (setup.type & kKindOfRequest) == kOfClass;
}

// Waits until the host has sent something or the limit, if any, has passed.
bool readable(int descriptor, std::optional<VideoStream::Clock::duration> limit) {
    pollfd wanted{descriptor, POLLIN, 0};
    timespec time{};
    if (limit) {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(*limit);
        time.tv_sec = seconds.count();
        time.tv_nsec = std::chrono::nanoseconds(*limit - seconds).count();
    }
    return ppoll(&wanted, 1, limit ? &time : nullptr, nullptr) > 0;
}

} // namespace

UsbCamera::UsbCamera(virtualcam::CameraDescription camera, virtualcam::FrameSource& frames)
  : camera_(std::move(camera))
  , requests_(camera_)
  , stream_(frames) {}

UsbCamera::~UsbCamera() {
    unplug();
}

void UsbCamera::plugIn() {
    line_ = connectDevice();
    thread_ = std::thread([this] { serve(); });
}

void UsbCamera::unplug() {
    if (thread_.joinable()) {
        shutdown(line_.get(), SHUT_RDWR);
        thread_.join();
        line_ = UniqueFd();
    }
}

void UsbCamera::serve() {
    stream_.reset();
    waitingForStatus_.clear();
    open_ = true;
    while (open_) {
        if (readable(line_.get(), stream_.untilDue())) {
            open_ = receive();
        } else if (stream_.untilDue() == VideoStream::Clock::duration::zero()) {
            send(stream_.answer());
        }
    }
}

bool UsbCamera::receive() {
    Bytes header(kHeaderBytes);
    if (!receiveInto(header)) {
        return false;
    }
    const Request request = parseRequest(header);
    if (request.command == Command::kUnlink) {
        handleUnlink(request);
    } else {
        handleSubmit(request);
    }
    return open_;
}

bool UsbCamera::receiveInto(Bytes& bytes) {
    if (bytes.empty()) {
        return true; // recv then blocks until bytes arrive
    }
    const auto wanted = static_cast<ssize_t>(bytes.size());
    return recv(line_.get(), bytes.data(), bytes.size(), MSG_WAITALL) == wanted;
}

void UsbCamera::send(const Bytes& message) {
    std::size_t sent = 0;
    while (sent < message.size()) {
        const ssize_t step =
            ::send(line_.get(), message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (step < 0) {
            open_ = false;
            return;
        }
        sent += static_cast<std::size_t>(step);
    }
}

void UsbCamera::handleSubmit(const Request& request) {
    switch (request.endpoint) {
    case 0:
        handleSetup(request);
        break;
    case kStatusEndpoint:
        waitingForStatus_.push_back(request.sequence);
        break;
    default: {
        Bytes described(request.packets * kPacketBytes);
        open_ = open_ && receiveInto(described);
        std::vector<Packet> packets;
        for (std::size_t at = 0; at < described.size(); at += kPacketBytes) {
            packets.push_back(parsePacket(ByteView(described).subspan(at, kPacketBytes)));
        }
        stream_.submit(request, std::move(packets));
        break;
    }
    }
}

void UsbCamera::handleUnlink(const Request& request) {
    const bool waited =
        std::erase(waitingForStatus_, request.unlinked) != 0 || stream_.unlink(request.unlinked);
    send(unlinkReply(request, waited ? -ECONNRESET : 0));
}

void UsbCamera::handleSetup(const Request& request) {
    const Setup& setup = request.setup;
    if (setup.toHost()) {
        std::optional<Bytes> answer = read(setup);
        if (!answer) {
            send(submitReply(request, -EPIPE, 0));
            return;
        }
        answer->resize(std::min<std::size_t>(answer->size(), setup.length));
        Bytes message = submitReply(request, 0, static_cast<std::uint32_t>(answer->size()));
        message.insert(message.end(), answer->begin(), answer->end());
        send(message);
        return;
    }
    Bytes data(request.length);
    open_ = open_ && receiveInto(data);
    const bool accepted = open_ && write(setup, data);
    send(submitReply(request, accepted ? 0 : -EPIPE, accepted ? request.length : 0));
}

std::optional<Bytes> UsbCamera::read(const Setup& setup) const {
    if (ofClass(setup)) {
        return requests_.get(setup);
    }
    switch (setup.request) {
    case kGetStatus:
        return Bytes{0, 0};
    case kGetDescriptor:
        return descriptor(setup);
    default:
        return std::nullopt;
    }
}

std::optional<Bytes> UsbCamera::descriptor(const Setup& setup) const {
    Bytes found;
    switch (setup.value >> 8) {
    case kDevice:
        found = deviceDescriptor(camera_);
        break;
    case kConfiguration:
        found = configurationDescriptor(camera_);
        break;
    case kString:
        found = stringDescriptor(camera_, setup.value & 0xff);
        break;
    default:
        break;
    }
    return found.empty() ? std::nullopt : std::optional(found);
}

bool UsbCamera::write(const Setup& setup, ByteView data) {
    if (ofClass(setup)) {
        return requests_.set(setup, data);
    }
    if (setup.request == kSetInterface && setup.index == kStreamingInterface) {
        selectSetting(setup);
    }
    return true;
}

// With setting 0, which has no bandwidth, the host ends the stream.
void UsbCamera::selectSetting(const Setup& setup) {
    if (setup.value == 0) {
        stream_.stop();
    } else {
        stream_.start(requests_.pixelFormat(), requests_.size(), requests_.interval());
    }
}

} // namespace doccam::vm
