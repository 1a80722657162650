#include "capture/driver_buffers.h"

#include "base/pause.h"
#include "capture/request_failure.h"
#include "state/session.h"

#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace doccam {
namespace {

constexpr int kUnmapPause = 10;

v4l2_buffer bufferRecord(int index) {
    v4l2_buffer record{};
    record.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    record.memory = V4L2_MEMORY_MMAP;
    record.index = static_cast<std::uint32_t>(index);
    return record;
}

int mapBuffer(record::Session& session, int index) {
    v4l2_buffer record = bufferRecord(index);
    if (ioctl(session.cam_fd.get(), VIDIOC_QUERYBUF, &record) != 0) {
        return requestFailed("ioctl(VIDIOC_QUERYBUF)", -10);
    }
    std::printf("buffer.length: %d", static_cast<int>(record.length));
    std::printf("buffer.m.offset: %d", static_cast<int>(record.m.offset));
    void* mapping = mmap(nullptr, record.length, PROT_READ | PROT_WRITE, MAP_SHARED,
                         session.cam_fd.get(), static_cast<off_t>(record.m.offset));
    if (mapping == MAP_FAILED) {
        const int error = errno;
        std::puts("MAP_FAILED!!!!!!!!!!!!!!!!!!!!!!!!!!!!");
        errno = error;
        return requestFailed("mmap()", -11);
    }
    session.video_buffer_ptr[index] = static_cast<unsigned char*>(mapping);
    session.mappedLength[static_cast<std::size_t>(index)] = record.length;

    record = bufferRecord(index);
    if (ioctl(session.cam_fd.get(), VIDIOC_QBUF, &record) != 0) {
        return requestFailed("ioctl(VIDIOC_QBUF)", -12);
    }
    return 0;
}

// The pointer stays: it marks a buffer that has been mapped before.
void forget(record::Session& session, int index) {
    session.mappedLength[static_cast<std::size_t>(index)] = 0;
}

// Unmaps the rest of the buffer from offset.
void unmapFrom(const record::Session& session, int index, std::size_t offset) {
    const std::size_t mapped = session.mappedLength[static_cast<std::size_t>(index)];
    if (offset < mapped) {
        munmap(session.video_buffer_ptr[index] + offset, mapped - offset);
    }
}

std::size_t wholePages(std::size_t length) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return (length + page - 1) / page * page;
}

// The driver reports the length; it must not reach past what was mapped.
void unmapBuffer(record::Session& session, int index) {
    v4l2_buffer record = bufferRecord(index);
    ioctl(session.cam_fd.get(), VIDIOC_QUERYBUF, &record);
    const std::size_t length =
        std::min<std::size_t>(record.length, session.mappedLength[static_cast<std::size_t>(index)]);
    unsigned char* const pixels = session.video_buffer_ptr[index];
    if (pixels != nullptr && munmap(pixels, length) == -1) {
        std::puts("munmap fail!!!");
        // An unplugged camera no longer reports the length; the mapping is still there.
        unmapFrom(session, index, 0);
    } else {
        unmapFrom(session, index, wholePages(length));
    }
    forget(session, index);
    pauseFor(kUnmapPause);
}

} // namespace

int mapDriverBuffers(record::Session& session) {
    v4l2_requestbuffers request{};
    request.count = static_cast<std::uint32_t>(session.buffer_count);
    request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    request.memory = V4L2_MEMORY_MMAP;
    if (ioctl(session.cam_fd.get(), VIDIOC_REQBUFS, &request) != 0) {
        return requestFailed("ioctl(VIDIOC_REQBUFS)", -8);
    }
    std::printf("req.count: %d", static_cast<int>(request.count));
    if (request.count < static_cast<std::uint32_t>(session.buffer_count)) {
        std::puts("request buffer failed");
        return -9;
    }
    for (int index = 0; index < session.buffer_count; ++index) {
        if (const int code = mapBuffer(session, index); code != 0) {
            return code;
        }
    }
    return 0;
}

void unmapLostBuffers(record::Session& session) {
    for (int index = 0; index < session.buffer_count; ++index) {
        unmapFrom(session, index, 0);
        forget(session, index);
    }
}

void unmapDriverBuffers(record::Session& session) {
    for (int index = 0; index < session.buffer_count; ++index) {
        unmapBuffer(session, index);
    }
}

} // namespace doccam
