// Removing slow variations of the light from grey levels.
#pragma once

#include <algorithm>

namespace doccam {

// Subtracts 0.7 of the background's distance from mid-grey, truncated. Below 0 it becomes 0; above
// 255 it wraps around.
[[gnu::always_inline]] inline unsigned char flatFieldedLevel(int grey, int background) {
    constexpr int kMiddleLevel = 127;
    // 0.7 in single precision, slightly less than 0.7.
    constexpr int kLift = 11744051;
    constexpr int kLiftShift = 24;
    const int lift = (kLift * (kMiddleLevel - background)) >> kLiftShift;
    return static_cast<unsigned char>(std::max(grey + lift, 0));
}

} // namespace doccam
