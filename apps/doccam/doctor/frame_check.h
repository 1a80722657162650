// Checking a frame's bytes.
#pragma once

#include "camera/cameras.h"

#include <cstdint>
#include <span>

namespace doccam::host {

enum class FrameFlaw { kNone, kShort, kNoJpeg };

// MJPEG must be a valid JPEG up to its end marker; anything after that is ignored. YUYV must have
// two bytes per pixel.
FrameFlaw flawOf(std::span<const std::uint8_t> frame, Format format, Size size);

} // namespace doccam::host
