#include "capture/frame_intake.h"

#include "base/shared_work.h"
#include "decode/mjpeg_frames.h"
#include "state/session.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

namespace doccam {
namespace {

// Room past the frame for a pixel pair and for what a decoder may read beyond its data.
constexpr std::size_t kReadSlack = kCodecPadding + 16;

// Images may keep a larger size across a failed open; the frame must then fill that.
std::size_t bytesToReserve(const cv::Mat& image, std::size_t frame) {
    return std::max(frame, image.total() * image.elemSize()) + kReadSlack;
}

} // namespace

FrameIntake::FrameIntake(StreamingThread& thread, const record::Session& session)
  : thread_(thread)
  , session_(session)
  , capacity_(static_cast<std::size_t>(std::max(session.nSize.load(), 0)))
  , reserved_(bytesToReserve(thread.frames().srcimage, capacity_))
  , frame_(std::make_unique<RawFrame>(reserved_))
  , nextPicture_(makeMjpegPicture(session.pdecode)) {}

FrameIntake::~FrameIntake() {
    thread_.decodeThread().end();
}

bool FrameIntake::take() {
    if (!std::exchange(hasNext_, false)) {
        isBegun_ = false;
        return fetch(*frame_);
    }
    std::swap(frame_, next_);
    isBegun_ = std::exchange(nextIsBegun_, false);
    return true;
}

bool FrameIntake::decodeInto(cv::Mat& image) {
    if (isBegun_ && !fetchNextIfThere()) {
        return false;
    }
    const Decoded decoded = decode({image.cols, image.rows});
    if (!fetchNextIfThere()) {
        return false;
    }
    beginNext();
    // The decode thread needs a core of its own: it sets the frame rate.
    reserveCores(nextIsBegun_ ? 1 : 0);
    storeFrame(session_.pdecode, decoded, wanted_, image);
    return true;
}

bool FrameIntake::fetch(RawFrame& frame) {
    DequeuedBuffer dequeued;
    const int descriptor = session_.cam_fd.get();
    if (!thread_.outside([&] { dequeued = dequeueBuffer(descriptor); })) {
        return false;
    }
    unsigned char* const bytes = frame.bytes.data();
    frame.grabbed = takeFrame(session_, dequeued, {bytes, capacity_});
    // A short frame is followed by zeros, not by what a longer one left.
    const int length = frame.grabbed.length;
    if (length < frame.dirtyLength) {
        std::fill(bytes + length, bytes + frame.dirtyLength, std::uint8_t{0});
    }
    frame.dirtyLength = length;
    return true;
}

bool FrameIntake::fetchNextIfThere() {
    if (hasNext_ || !nextPicture_ || !session_.bKeep || thread_.stopRequested() ||
        !hasFilledBuffer(session_.cam_fd.get())) {
        return true;
    }
    if (!next_) {
        next_ = std::make_unique<RawFrame>(reserved_);
    }
    hasNext_ = fetch(*next_);
    return hasNext_;
}

void FrameIntake::beginNext() {
    if (!hasNext_ || next_->grabbed.failure != GrabbedFrame::Failure::kNone) {
        return;
    }
    thread_.decodeThread().begin([this, next = next_.get()] {
        nextResult_ = decodeFrame(session_.pdecode, mjpegIn(*next), nextPicture_.get());
    });
    nextIsBegun_ = true;
}

MjpegFrame FrameIntake::mjpegIn(const RawFrame& frame) const {
    const auto length = static_cast<std::size_t>(frame.grabbed.length);
    return {.data = {frame.bytes.data(), length}, .padded = true, .wanted = wanted_};
}

Decoded FrameIntake::decode(FrameSize wanted) {
    const bool isBegun = std::exchange(isBegun_, false);
    if (isBegun) {
        thread_.decodeThread().finish();
    }
    wanted_ = wanted; // the decode thread reads it
    if (!isBegun) {
        return decodeFrame(session_.pdecode, mjpegIn(*frame_));
    }
    if (nextResult_ == Decoded::kPicture) {
        adoptPicture(session_.pdecode, *nextPicture_);
    }
    return nextResult_;
}

} // namespace doccam
