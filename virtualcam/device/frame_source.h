// The source of a virtual camera's frames.
#pragma once

#include "description.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace doccam::virtualcam {

using FrameBytes = std::shared_ptr<const std::vector<std::uint8_t>>;

struct DeliveredFrame {
    std::uint32_t sequence = 0;
    std::uint32_t pixelFormat = 0;
    Size size;
    FrameBytes bytes; // placed at the start of the buffer; leftovers follow
};

// The frames of a stream so far.
struct FrameCount {
    std::uint32_t sent = 0;   // by the camera
    std::uint32_t missed = 0; // of these, as no buffer was queued
    int longestWait = 0;      // milliseconds until a frame was fetched, since the last count
};

class FrameSource {
  public:
    virtual ~FrameSource() = default;

    // The bytes of the number-th frame in the given format, never null. Thread-safe.
    virtual FrameBytes frame(std::uint32_t pixelFormat, Size size, std::uint32_t number) = 0;
};

} // namespace doccam::virtualcam
