// The pixel format of frames and pages: three 8-bit samples.
#pragma once

#include <cstddef>

namespace doccam {

inline constexpr int kChannels = 3;
inline constexpr std::ptrdiff_t kPixelBytes = kChannels;
inline constexpr unsigned char kWhite = 255;

} // namespace doccam
