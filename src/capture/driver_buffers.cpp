#include "capture/driver_buffers.h"

#include "api/library_state.h"
#include "capture/request_failure.h"

#include <doccam/doccam.hpp>

#include <sys/ioctl.h>
#include <sys/mman.h>

#include <algorithm>

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

int mapBuffer(int index) {
    LibraryState& library = state();
    v4l2_buffer record = bufferRecord(index);
    if (ioctl(library.cam_fd, VIDIOC_QUERYBUF, &record) != 0) {
        return requestFailed("ioctl(VIDIOC_QUERYBUF) failed %d(%s)", -10);
    }
    std::printf("buffer.length: %d", static_cast<int>(record.length));
    std::printf("buffer.m.offset: %d", static_cast<int>(record.m.offset));
    void* mapping = mmap(nullptr, record.length, PROT_READ | PROT_WRITE, MAP_SHARED, library.cam_fd,
                         static_cast<off_t>(record.m.offset));
    if (mapping == MAP_FAILED) {
        const int error = errno;
        std::puts("MAP_FAILED!!!!!!!!!!!!!!!!!!!!!!!!!!!!");
        errno = error;
        return requestFailed("mmap() failed %d(%s)", -11);
    }
    library.video_buffer_ptr[index] = static_cast<unsigned char*>(mapping);
    library.mappedLength[static_cast<std::size_t>(index)] = record.length;

    record = bufferRecord(index);
    if (ioctl(library.cam_fd, VIDIOC_QBUF, &record) != 0) {
        return requestFailed("ioctl(VIDIOC_QBUF) failed %d(%s)", -12);
    }
    return 0;
}

void unmapByKnownLength(int index) {
    LibraryState& library = state();
    unsigned char*& mapping = library.video_buffer_ptr[index];
    std::size_t& mapped = library.mappedLength[static_cast<std::size_t>(index)];
    if (mapped != 0) {
        munmap(mapping, mapped);
    }
    mapping = nullptr;
    mapped = 0;
}

void unmapBuffer(int index) {
    LibraryState& library = state();
    v4l2_buffer record = bufferRecord(index);
    ioctl(library.cam_fd, VIDIOC_QUERYBUF, &record);
    if (munmap(library.video_buffer_ptr[index], record.length) == -1) {
        std::puts("munmap fail!!!");
        // An unplugged camera no longer tells the length; the mapping is still there.
        unmapByKnownLength(index);
    }
    library.video_buffer_ptr[index] = nullptr;
    library.mappedLength[static_cast<std::size_t>(index)] = 0;
    Sleep(kUnmapPause);
}

} // namespace

int mapDriverBuffers() {
    LibraryState& library = state();
    v4l2_requestbuffers request{};
    request.count = static_cast<std::uint32_t>(library.buffer_count);
    request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    request.memory = V4L2_MEMORY_MMAP;
    if (ioctl(library.cam_fd, VIDIOC_REQBUFS, &request) != 0) {
        return requestFailed("ioctl(VIDIOC_REQBUFS) failed %d(%s)", -8);
    }
    std::printf("req.count: %d", static_cast<int>(request.count));
    if (request.count < static_cast<std::uint32_t>(library.buffer_count)) {
        std::puts("request buffer failed");
        return -9;
    }
    for (int index = 0; index < library.buffer_count; ++index) {
        if (const int code = mapBuffer(index); code != 0) {
            return code;
        }
    }
    return 0;
}

void unmapLostBuffers() {
    for (int index = 0; index < state().buffer_count; ++index) {
        unmapByKnownLength(index);
    }
}

void unmapDriverBuffers() {
    for (int index = 0; index < state().buffer_count; ++index) {
        unmapBuffer(index);
    }
}

} // namespace doccam
