#include "device/buffer_queue.h"

#include <cerrno>

namespace doccam::virtualcam {

int BufferQueue::allocate(std::uint32_t count, std::uint32_t bytes) {
    buffers_.clear();
    queue_.clear();
    memory_.reset();
    bytes_ = bytes;
    if (count == 0) {
        return 0;
    }
    memory_ = BufferMemory::create(count, bytes);
    if (!memory_) {
        return ENOMEM;
    }
    buffers_.resize(count);
    return 0;
}

bool BufferQueue::valid(const v4l2_buffer& record) const {
    return record.type == V4L2_BUF_TYPE_VIDEO_CAPTURE && record.index < buffers_.size();
}

int BufferQueue::describe(v4l2_buffer& record) const {
    if (!valid(record)) {
        return EINVAL;
    }
    const std::uint32_t index = record.index;
    const Buffer& buffer = buffers_[index];
    record = buffer.contents;
    record.index = index;
    record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    record.memory = V4L2_MEMORY_MMAP;
    record.length = bytes_;
    record.m.offset = static_cast<std::uint32_t>(memory_->offset(index));
    record.flags = V4L2_BUF_FLAG_TIMESTAMP_MONOTONIC | V4L2_BUF_FLAG_TSTAMP_SRC_SOE;
    record.flags |= buffer.queued ? V4L2_BUF_FLAG_QUEUED : 0;
    record.flags |= buffer.mapped ? V4L2_BUF_FLAG_MAPPED : 0;
    return 0;
}

int BufferQueue::enqueue(v4l2_buffer& record) {
    if ((record.flags & V4L2_BUF_FLAG_REQUEST_FD) != 0) {
        return EBADR;
    }
    if (!valid(record) || record.memory != V4L2_MEMORY_MMAP || buffers_[record.index].queued) {
        return EINVAL;
    }
    buffers_[record.index].queued = true;
    queue_.push_back(record.index);
    return describe(record);
}

std::uint32_t BufferQueue::takeQueued() {
    const std::uint32_t index = queue_.front();
    queue_.pop_front();
    return index;
}

void BufferQueue::deliver(std::uint32_t index, const v4l2_buffer& contents) {
    buffers_[index].queued = false;
    buffers_[index].contents = contents;
}

void BufferQueue::returnAll() {
    queue_.clear();
    for (Buffer& buffer : buffers_) {
        buffer.queued = false;
    }
}

std::optional<std::uint32_t> BufferQueue::noteMapping(std::size_t offset) {
    for (std::uint32_t i = 0; i < buffers_.size(); ++i) {
        if (memory_->offset(i) == offset) {
            buffers_[i].mapped = true;
            return i;
        }
    }
    return std::nullopt;
}

} // namespace doccam::virtualcam
