// A minimal V4L2 client for the tests of the virtual camera.
#pragma once

#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <vector>

namespace doccam::test {

// Makes a request; returns 0 or errno.
template <typename Argument>
int errorOf(int descriptor, unsigned long request, Argument* argument) {
    return ioctl(descriptor, request, argument) == 0 ? 0 : errno;
}

// An open node for video capture into mapped buffers.
class VideoClient {
  public:
    explicit VideoClient(const std::string& path, int flags = O_RDWR)
      : descriptor_(open(path.c_str(), flags)) {}

    ~VideoClient() {
        for (const auto& [address, length] : mappings_) {
            munmap(address, length);
        }
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    VideoClient(const VideoClient&) = delete;
    VideoClient& operator=(const VideoClient&) = delete;

    int descriptor() const { return descriptor_; }

    template <typename Argument>
    int request(unsigned long number, Argument& argument) {
        return errorOf(descriptor_, number, &argument);
    }

    static v4l2_format format(std::uint32_t pixelFormat, std::uint32_t width,
                              std::uint32_t height) {
        v4l2_format record{};
        record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        record.fmt.pix.pixelformat = pixelFormat;
        record.fmt.pix.width = width;
        record.fmt.pix.height = height;
        return record;
    }

    static v4l2_buffer buffer(std::uint32_t index = 0) {
        v4l2_buffer record{};
        record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        record.memory = V4L2_MEMORY_MMAP;
        record.index = index;
        return record;
    }

    static v4l2_requestbuffers buffers(std::uint32_t count) {
        v4l2_requestbuffers record{};
        record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        record.memory = V4L2_MEMORY_MMAP;
        record.count = count;
        return record;
    }

    int setFormat(std::uint32_t pixelFormat, std::uint32_t width, std::uint32_t height) {
        v4l2_format record = format(pixelFormat, width, height);
        return request(VIDIOC_S_FMT, record);
    }

    int streamOn() {
        int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        return request(VIDIOC_STREAMON, type);
    }

    int streamOff() {
        int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        return request(VIDIOC_STREAMOFF, type);
    }

    // Sets the format, maps and queues the buffers and starts the stream; returns 0 or the first
    // error.
    int start(std::uint32_t pixelFormat, std::uint32_t width, std::uint32_t height,
              std::uint32_t count = 4) {
        int error = setFormat(pixelFormat, width, height);
        v4l2_requestbuffers granted = buffers(count);
        error = error != 0 ? error : request(VIDIOC_REQBUFS, granted);
        for (std::uint32_t i = 0; error == 0 && i < granted.count; ++i) {
            v4l2_buffer record = buffer(i);
            error = request(VIDIOC_QUERYBUF, record);
            error = error != 0 ? error : map(record);
            error = error != 0 ? error : request(VIDIOC_QBUF, record);
        }
        return error != 0 ? error : streamOn();
    }

    // Maps the buffer that VIDIOC_QUERYBUF described; returns 0 or the error.
    int map(const v4l2_buffer& record) {
        void* address = mmap(nullptr, record.length, PROT_READ | PROT_WRITE, MAP_SHARED,
                             descriptor_, static_cast<off_t>(record.m.offset));
        if (address == MAP_FAILED) {
            return errno;
        }
        mappings_.push_back({address, record.length});
        return 0;
    }

    // The mapped bytes of a buffer, including leftovers.
    const std::uint8_t* bytes(std::uint32_t index) const {
        return static_cast<const std::uint8_t*>(mappings_.at(index).address);
    }

    // Dequeues a frame and queues its buffer again; returns the error of the first failed request.
    int takeFrame(v4l2_buffer& record) {
        record = buffer();
        const int error = request(VIDIOC_DQBUF, record);
        v4l2_buffer back = record;
        return error != 0 ? error : request(VIDIOC_QBUF, back);
    }

  private:
    struct Mapping {
        void* address;
        std::size_t length;
    };

    int descriptor_;
    std::vector<Mapping> mappings_;
};

} // namespace doccam::test
