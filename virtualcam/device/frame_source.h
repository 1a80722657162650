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

class FrameSource {
  public:
    virtual ~FrameSource() = default;

    // The bytes of the number-th frame in the given format, never null. Thread-safe.
    virtual FrameBytes frame(std::uint32_t pixelFormat, Size size, std::uint32_t number) = 0;
};

} // namespace doccam::virtualcam
