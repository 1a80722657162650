// Freeing grey levels of the light's slow changes.
#pragma once

#include <algorithm>

namespace doccam {

// A grey level freed of 0.7 of its background's distance from the middle, fractions cut off. Below
// 0 it becomes 0; above 255 it wraps around.
[[gnu::always_inline]] inline unsigned char flatFieldedLevel(int grey, int background) {
    constexpr int kMiddleLevel = 127;
    // 0.7 in single precision, a little less than the true one.
    constexpr int kLift = 11744051;
    constexpr int kLiftShift = 24;
    const int lift = (kLift * (kMiddleLevel - background)) >> kLiftShift;
    return static_cast<unsigned char>(std::max(grey + lift, 0));
}

} // namespace doccam
