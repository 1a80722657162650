#include "doctor/stream_trial.h"

#include "base/unique_fd.h"
#include "camera/cameras.h"
#include "doctor/frame_check.h"

#include <fcntl.h>
#include <linux/videodev2.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <vector>

namespace doccam::host {
namespace {

// A camera's first frames may be damaged and are not checked.
constexpr int kFramesSkipped = 2;
constexpr int kFramesJudged = 6;
constexpr std::uint32_t kBuffers = 4;
constexpr int kLongestFrameWaitMs = 3000;

// A request that the driver refused.
struct RequestFailure {
    const char* request;
    int error;
};

struct DriverFormat {
    Format format = Format::kMjpeg;
    Size size;
};

struct DriverFrame {
    std::span<const std::uint8_t> bytes;
    bool damaged = false; // marked by the driver as damaged
};

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
        if (const Size size = sizeIn(entry); size.area() > largest.area()) {
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

// Streams from a node step by step, to identify the failing step. Members throw RequestFailure.
class DriverStream {
  public:
    explicit DriverStream(const std::string& node)
      : node_(open(node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC)) {
        if (!node_.isOpen()) {
            throw RequestFailure{"open", errno};
        }
    }

    ~DriverStream() {
        int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        if (streaming_) {
            ioctl(node_.get(), VIDIOC_STREAMOFF, &type);
        }
        for (const Mapping& buffer : buffers_) {
            munmap(buffer.start, buffer.length);
        }
    }

    // The largest size in MJPEG, or else in YUYV; fails with EINVAL if there is neither.
    DriverFormat largestFormat() const {
        for (const Format format : {Format::kMjpeg, Format::kYuyv}) {
            if (const Size size = largestSize(node_.get(), format); size.area() > 0) {
                return {format, size};
            }
        }
        throw RequestFailure{"VIDIOC_ENUM_FRAMESIZES", EINVAL};
    }

    void start(const DriverFormat& format) {
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

    // Calls use with the next frame; false if none has come for three seconds.
    bool withNextFrame(const std::function<void(const DriverFrame&)>& use) const {
        v4l2_buffer record = bufferRecord(0);
        while (true) {
            pollfd readable{node_.get(), POLLIN, 0};
            if (poll(&readable, 1, kLongestFrameWaitMs) <= 0) {
                return false;
            }
            if (ioctl(node_.get(), VIDIOC_DQBUF, &record) == 0) {
                break;
            }
            if (errno != EAGAIN) {
                throw RequestFailure{"VIDIOC_DQBUF", errno};
            }
        }
        if (record.index >= buffers_.size()) {
            throw RequestFailure{"VIDIOC_DQBUF", EINVAL};
        }
        const Mapping& buffer = buffers_[record.index];
        const std::size_t length = std::min<std::size_t>(record.bytesused, buffer.length);
        use({{static_cast<const std::uint8_t*>(buffer.start), length},
             (record.flags & V4L2_BUF_FLAG_ERROR) != 0});
        enqueue(record.index);
        return true;
    }

  private:
    struct Mapping {
        void* start = nullptr;
        std::size_t length = 0;
    };

    void request(unsigned long code, const char* name, void* argument) const {
        if (ioctl(node_.get(), code, argument) != 0) {
            throw RequestFailure{name, errno};
        }
    }

    void mapBuffer(std::uint32_t index) {
        v4l2_buffer record = bufferRecord(index);
        request(VIDIOC_QUERYBUF, "VIDIOC_QUERYBUF", &record);
        void* start = mmap(nullptr, record.length, PROT_READ | PROT_WRITE, MAP_SHARED, node_.get(),
                           record.m.offset);
        if (start == MAP_FAILED) {
            throw RequestFailure{"mmap", errno};
        }
        buffers_.push_back({start, record.length});
    }

    void enqueue(std::uint32_t index) const {
        v4l2_buffer record = bufferRecord(index);
        request(VIDIOC_QBUF, "VIDIOC_QBUF", &record);
    }

    UniqueFd node_;
    bool streaming_ = false;
    std::vector<Mapping> buffers_;
};

void judge(Trial& trial, const DriverFrame& frame, const DriverFormat& format) {
    ++trial.frames;
    const FrameFlaw flaw =
        frame.damaged ? FrameFlaw::kShort : flawOf(frame.bytes, format.format, format.size);
    trial.shortFrames += flaw == FrameFlaw::kShort ? 1 : 0;
    trial.framesWithoutJpeg += flaw == FrameFlaw::kNoJpeg ? 1 : 0;
}

void stream(DriverStream& driver, Trial& trial, const Interrupt& interrupt) {
    const DriverFormat format = driver.largestFormat();
    trial.capture = nameOf(format.format) + " " + textOf(format.size);
    driver.start(format);
    bool came = true;
    for (int i = 0; came && i < kFramesSkipped + kFramesJudged; ++i) {
        interrupt.check();
        came = driver.withNextFrame([&](const DriverFrame& frame) {
            if (i >= kFramesSkipped) {
                judge(trial, frame, format);
            }
        });
    }
}

} // namespace

int tryStream(const std::string& node, Trial& trial, const Interrupt& interrupt) {
    try {
        DriverStream driver(node);
        trial.held = true;
        stream(driver, trial, interrupt);
    } catch (const RequestFailure& failure) {
        if (!trial.held) {
            return failure.error;
        }
        trial.step = failure.request;
        trial.error = failure.error;
    }
    return 0;
}

} // namespace doccam::host
