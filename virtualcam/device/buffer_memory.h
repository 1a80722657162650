// The memory of a camera's buffers, shared with the program that maps them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace doccam::virtualcam {

// Stays alive for as long as somebody holds it, whatever the device does meanwhile.
class BufferMemory {
  public:
    // Null where the memory cannot be had.
    static std::shared_ptr<BufferMemory> create(std::uint32_t count, std::uint32_t bytes);

    ~BufferMemory();
    BufferMemory(const BufferMemory&) = delete;
    BufferMemory& operator=(const BufferMemory&) = delete;

    // The memory file, in which buffer i begins at offset(i).
    int descriptor() const { return descriptor_; }

    std::size_t offset(std::uint32_t index) const { return index * stride_; }

    // A buffer's length in whole pages.
    std::size_t stride() const { return stride_; }

    // Puts a frame at the beginning of a buffer. With leftOver bytes as of an earlier, longer frame
    // follow it; otherwise whatever an earlier frame left is wiped.
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
