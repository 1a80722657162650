// Frame sizes in pixels.
#pragma once

#include <cstdint>

namespace doccam {

struct FrameSize {
    int width = 0;
    int height = 0;

    constexpr std::int64_t area() const { return static_cast<std::int64_t>(width) * height; }

    constexpr bool operator==(const FrameSize&) const = default;
};

// Whether turning a picture by quarterTurns swaps its sides; only 1 and 3 do.
constexpr bool sidesSwapped(int quarterTurns) {
    return quarterTurns == 1 || quarterTurns == 3;
}

// The size of a picture after quarterTurns.
constexpr FrameSize turned(FrameSize size, int quarterTurns) {
    return sidesSwapped(quarterTurns) ? FrameSize{size.height, size.width} : size;
}

// The largest size of a supported camera, and that of whole-frame stills enlarged on request.
inline constexpr FrameSize kFullSize{3264, 2448};
inline constexpr FrameSize kEnlargedSize{3672, 2856};

} // namespace doccam
