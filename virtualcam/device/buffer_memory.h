// The memory of a camera's buffers, which the program maps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace doccam::virtualcam {

// Shared: it outlives the device while a mapping exists.
class BufferMemory {
  public:
    // Null if the memory cannot be allocated.
    static std::shared_ptr<BufferMemory> create(std::uint32_t count, std::uint32_t bytes);

    ~BufferMemory();
    BufferMemory(const BufferMemory&) = delete;
    BufferMemory& operator=(const BufferMemory&) = delete;

    // The memory file, in which buffer i begins at offset(i).
    int descriptor() const { return descriptor_; }

    std::size_t offset(std::uint32_t index) const { return index * stride_; }

    // A buffer's length in whole pages.
    std::size_t stride() const { return stride_; }

    // Puts a frame at the start of a buffer. With leftOver, bytes as of an earlier, longer frame
    // follow it; otherwise the leftovers of earlier frames are cleared.
    void fill(std::uint32_t index, std::span<const std::uint8_t> frame, bool leftOver);

  private:
    BufferMemory(int descriptor, std::uint8_t* base, std::uint32_t count, std::uint32_t bytes);

    int descriptor_;
    std::uint8_t* base_;
    std::size_t bytes_;
    std::size_t stride_;
    std::vector<std::size_t> used_; // how far each buffer has been written
};

} // namespace doccam::virtualcam
