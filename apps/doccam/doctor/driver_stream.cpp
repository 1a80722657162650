#include "doctor/driver_stream.h"

#include <fcntl.h>
#include <linux/videodev2.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace doccam::host {
namespace {

constexpr std::uint32_t kBuffers = 4;
constexpr int kLongestFrameWaitMs = 3000;

std::uint32_t pixelFormatOf(Format format) {
    return format == Format::kMjpeg ? V4L2_PIX_FMT_MJPEG : V4L2_PIX_FMT_YUYV;
}

// For a range, its largest size.
Size sizeIn(const v4l2_frmsizeenum& entry) {
    const bool discrete = entry.type == V4L2_FRMSIZE_TYPE_DISCRETE;
    return {static_cast<int>(discrete ? entry.discrete.width : entry.stepwise.max_width),
            static_cast<int>(discrete ? entry.discrete.height : entry.stepwise.max_height)};
}

Size largestSize(int descriptor, Format format) {
    Size largest;
    v4l2_frmsizeenum entry{};
    entry.pixel_format = pixelFormatOf(format);
    for (; ioctl(descriptor, VIDIOC_ENUM_FRAMESIZES, &entry) == 0; ++entry.index) {
        if (const Size size = sizeIn(entry); area(size) > area(largest)) {
            largest = size;
        }
    }
    return largest;
}

v4l2_buffer bufferRecord(std::uint32_t index) {
    v4l2_buffer record{};
    record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    record.memory = V4L2_MEMORY_MMAP;
    record.index = index;
    return record;
}

} // namespace

DriverStream::DriverStream(const std::string& node)
  : descriptor_(open(node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC)) {
    if (descriptor_ < 0) {
        throw RequestFailure("open", errno);
    }
}

DriverStream::~DriverStream() {
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    if (streaming_) {
        ioctl(descriptor_, VIDIOC_STREAMOFF, &type);
    }
    for (const Mapping& buffer : buffers_) {
        munmap(buffer.start, buffer.length);
    }
    close(descriptor_);
}

void DriverStream::request(unsigned long code, const char* name, void* argument) const {
    if (ioctl(descriptor_, code, argument) != 0) {
        throw RequestFailure(name, errno);
    }
}

DriverFormat DriverStream::largestFormat() const {
    for (const Format format : {Format::kMjpeg, Format::kYuyv}) {
        if (const Size size = largestSize(descriptor_, format); area(size) > 0) {
            return {format, size};
        }
    }
    throw RequestFailure("VIDIOC_ENUM_FRAMESIZES", EINVAL);
}

void DriverStream::start(const DriverFormat& format) {
    v4l2_format wanted{};
    wanted.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    wanted.fmt.pix.pixelformat = pixelFormatOf(format.format);
    wanted.fmt.pix.width = static_cast<std::uint32_t>(format.size.width);
    wanted.fmt.pix.height = static_cast<std::uint32_t>(format.size.height);
    request(VIDIOC_S_FMT, "VIDIOC_S_FMT", &wanted);
    v4l2_requestbuffers buffers{};
    buffers.count = kBuffers;
    buffers.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    buffers.memory = V4L2_MEMORY_MMAP;
    request(VIDIOC_REQBUFS, "VIDIOC_REQBUFS", &buffers);
    for (std::uint32_t index = 0; index < buffers.count; ++index) {
        mapBuffer(index);
        enqueue(index);
    }
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    request(VIDIOC_STREAMON, "VIDIOC_STREAMON", &type);
    streaming_ = true;
}

void DriverStream::mapBuffer(std::uint32_t index) {
    v4l2_buffer record = bufferRecord(index);
    request(VIDIOC_QUERYBUF, "VIDIOC_QUERYBUF", &record);
    void* start = mmap(nullptr, record.length, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor_,
                       record.m.offset);
    if (start == MAP_FAILED) {
        throw RequestFailure("mmap", errno);
    }
    buffers_.push_back({start, record.length});
}

void DriverStream::enqueue(std::uint32_t index) const {
    v4l2_buffer record = bufferRecord(index);
    request(VIDIOC_QBUF, "VIDIOC_QBUF", &record);
}

bool DriverStream::withNextFrame(const std::function<void(const DriverFrame&)>& use) {
    v4l2_buffer record = bufferRecord(0);
    while (true) {
        pollfd readable{descriptor_, POLLIN, 0};
        if (poll(&readable, 1, kLongestFrameWaitMs) <= 0) {
            return false;
        }
        if (ioctl(descriptor_, VIDIOC_DQBUF, &record) == 0) {
            break;
        }
        if (errno != EAGAIN) {
            throw RequestFailure("VIDIOC_DQBUF", errno);
        }
    }
    if (record.index >= buffers_.size()) {
        throw RequestFailure("VIDIOC_DQBUF", EINVAL);
    }
    const Mapping& buffer = buffers_[record.index];
    const std::size_t length = std::min<std::size_t>(record.bytesused, buffer.length);
    use({{static_cast<const std::uint8_t*>(buffer.start), length},
         (record.flags & V4L2_BUF_FLAG_ERROR) != 0});
    enqueue(record.index);
    return true;
}

} // namespace doccam::host
