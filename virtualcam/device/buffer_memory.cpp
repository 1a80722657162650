#include "device/buffer_memory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace doccam::virtualcam {

namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kLeftOver = 32768;

// Leaves the low descriptor numbers to the program's own files.
constexpr int kLowestDescriptor = 500;

std::size_t wholePages(std::size_t bytes) {
    return (bytes + kPage - 1) / kPage * kPage;
}

int createMemoryFile() {
    const int low = memfd_create("virtual camera", MFD_CLOEXEC);
    const int high = low < 0 ? -1 : fcntl(low, F_DUPFD_CLOEXEC, kLowestDescriptor);
    if (high < 0) {
        return low;
    }
    close(low);
    return high;
}

} // namespace

std::shared_ptr<BufferMemory> BufferMemory::create(std::uint32_t count, std::uint32_t bytes) {
    const std::size_t total = wholePages(bytes) * count;
    const int descriptor = createMemoryFile();
    if (descriptor < 0) {
        return nullptr;
    }
    if (ftruncate(descriptor, static_cast<off_t>(total)) != 0) {
        close(descriptor);
        return nullptr;
    }
    void* base = mmap(nullptr, total, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (base == MAP_FAILED) {
        close(descriptor);
        return nullptr;
    }
    return std::shared_ptr<BufferMemory>(
        new BufferMemory(descriptor, static_cast<std::uint8_t*>(base), count, bytes));
}

BufferMemory::BufferMemory(int descriptor, std::uint8_t* base, std::uint32_t count,
                           std::uint32_t bytes)
  : descriptor_(descriptor)
  , base_(base)
  , bytes_(bytes)
  , stride_(wholePages(bytes))
  , used_(count, 0) {}

BufferMemory::~BufferMemory() {
    munmap(base_, stride_ * used_.size());
    close(descriptor_);
}

void BufferMemory::fill(std::uint32_t index, std::span<const std::uint8_t> frame, bool leftOver) {
    std::uint8_t* buffer = base_ + offset(index);
    const std::size_t length = std::min(frame.size(), bytes_);
    std::copy_n(frame.data(), length, buffer);
    std::size_t end = length;
    if (leftOver) {
        const std::size_t rest = std::min({kLeftOver, length, bytes_ - length});
        std::copy_n(frame.data() + length - rest, rest, buffer + length);
        end += rest;
    } else if (used_[index] > length) {
        std::memset(buffer + length, 0, used_[index] - length);
    }
    used_[index] = std::max(used_[index], end);
}

} // namespace doccam::virtualcam
