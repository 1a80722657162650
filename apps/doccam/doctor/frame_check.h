// Whether the bytes of a frame are what the driver promised.
#pragma once

#include "camera/picture_format.h"

#include <cstdint>
#include <span>

namespace doccam::host {

enum class FrameFlaw { kNone, kShort, kNoJpeg };

// MJPEG: a JPEG that can be read, up to its end marker; what follows does not count. YUYV: two
// bytes for each pixel.
FrameFlaw flawOf(std::span<const std::uint8_t> frame, Format format, Size size);

} // namespace doccam::host
