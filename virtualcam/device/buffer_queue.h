// The buffers of a stream and their owners.
#pragma once

#include "device/buffer_memory.h"

#include <linux/videodev2.h>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace doccam::virtualcam {

// Functions that return int return 0 or an errno value. Not thread-safe.
class BufferQueue {
  public:
    static constexpr std::uint32_t kMaximumBuffers = 32;

    // Replaces the buffers with count new ones.
    int allocate(std::uint32_t count, std::uint32_t bytes);

    std::uint32_t count() const { return static_cast<std::uint32_t>(buffers_.size()); }

    bool empty() const { return buffers_.empty(); }

    const std::shared_ptr<BufferMemory>& memory() const { return memory_; }

    // Fills in a buffer's record, given its index.
    int describe(v4l2_buffer& record) const;

    // Takes a buffer from the program.
    int enqueue(v4l2_buffer& record);

    std::size_t queued() const { return queue_.size(); }

    // Removes the oldest buffer from the queue, which must not be empty.
    std::uint32_t takeQueued();

    // Records a buffer's contents and that the program has it again.
    void deliver(std::uint32_t index, const v4l2_buffer& contents);

    // Returns all queued buffers to the program.
    void returnAll();

    // Marks the buffer that begins at offset as mapped and returns it.
    std::optional<std::uint32_t> noteMapping(std::size_t offset);

  private:
    struct Buffer {
        bool queued = false;
        bool mapped = false;
        v4l2_buffer contents{};
    };

    bool valid(const v4l2_buffer& record) const;

    std::shared_ptr<BufferMemory> memory_;
    std::uint32_t bytes_ = 0;
    std::vector<Buffer> buffers_;
    std::deque<std::uint32_t> queue_;
};

} // namespace doccam::virtualcam
