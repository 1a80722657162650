#include "vm/camera/video_stream.h"

#include <algorithm>

namespace doccam::vm {
namespace {

constexpr std::size_t kPayloadHeader = 2;
constexpr std::uint8_t kEndOfHeader = 0x80;
constexpr std::uint8_t kEndOfFrame = 0x02;

} // namespace

void VideoStream::start(std::uint32_t pixelFormat, virtualcam::Size size,
                        std::chrono::nanoseconds interval) {
    running_ = true;
    pixelFormat_ = pixelFormat;
    size_ = size;
    interval_ = interval;
    due_ = Clock::now();
    frame_.reset();
}

void VideoStream::stop() {
    running_ = false;
    frame_.reset();
}

void VideoStream::reset() {
    stop();
    waiting_.clear();
}

void VideoStream::submit(const Request& request, std::vector<Packet> packets) {
    waiting_.push_back({request, std::move(packets)});
}

bool VideoStream::unlink(std::uint32_t sequence) {
    return std::erase_if(waiting_, [&](const Transfer& transfer) {
               return transfer.request.sequence == sequence;
           }) != 0;
}

std::optional<VideoStream::Clock::duration> VideoStream::untilDue() const {
    if (!running_ || waiting_.empty()) {
        return std::nullopt;
    }
    if (frame_) {
        return Clock::duration::zero();
    }
    return std::max(due_ - Clock::now(), Clock::duration::zero());
}

Bytes VideoStream::answer() {
    Transfer transfer = std::move(waiting_.front());
    waiting_.pop_front();
    if (!frame_) {
        beginFrame();
    }
    Bytes data;
    for (Packet& packet : transfer.packets) {
        if (!frame_) {
            break;
        }
        fill(packet, data);
    }
    return isochronousReply(transfer.request, transfer.packets, data);
}

void VideoStream::beginFrame() {
    frame_ = frames_.frame(pixelFormat_, size_, number_++);
    sent_ = 0;
    due_ = std::max(due_ + interval_, Clock::now());
}

// The lowest bit of the header alternates between frames.
void VideoStream::fill(Packet& packet, Bytes& data) {
    const std::size_t room = packet.length - kPayloadHeader;
    const std::size_t length = std::min(room, frame_->size() - sent_);
    const bool last = sent_ + length == frame_->size();
    data.push_back(kPayloadHeader);
    data.push_back(
        static_cast<std::uint8_t>(kEndOfHeader | (number_ & 1U) | (last ? kEndOfFrame : 0U)));
    const auto begin = frame_->begin() + static_cast<std::ptrdiff_t>(sent_);
    data.insert(data.end(), begin, begin + static_cast<std::ptrdiff_t>(length));
    packet.actual = static_cast<std::uint32_t>(kPayloadHeader + length);
    sent_ += length;
    if (last) {
        frame_.reset();
    }
}

} // namespace doccam::vm
