// The USB descriptors with which a camera describes itself when plugged in.
#pragma once

#include "description.h"
#include "vm/camera/bytes.h"

#include <string>

namespace doccam::vm {

inline constexpr std::uint8_t kStreamingInterface = 1;
inline constexpr std::uint32_t kStatusEndpoint = 1;
inline constexpr std::uint32_t kVideoEndpoint = 2;
inline constexpr std::uint8_t kProductString = 2;

// The maximum payload of one packet in bytes: three transactions of a high-speed microframe.
inline constexpr std::uint32_t kLargestPayload = 3 * 1024;

// The frame interval in units of 100 nanoseconds, from frames per second.
constexpr std::uint32_t intervalOf(int frameRate) {
    return 10'000'000U / static_cast<std::uint32_t>(frameRate);
}

Bytes deviceDescriptor(const virtualcam::CameraDescription& camera);

// The configuration with its interfaces: video control, and streaming in the camera's formats.
// Formats and sizes are numbered from 1 in the description's order.
Bytes configurationDescriptor(const virtualcam::CameraDescription& camera);

// Strings 1 and 2, maker and product; 0 lists the languages. Empty for others.
Bytes stringDescriptor(const virtualcam::CameraDescription& camera, int number);

} // namespace doccam::vm
