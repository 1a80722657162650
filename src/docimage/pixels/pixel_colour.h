// When a pixel counts as coloured.
#pragma once

#include <algorithm>
#include <cstdint>

namespace doccam {

// A grey pixel's samples lie within 30 of their mean, rounded down. Comparing the sum instead of
// the mean avoids a division.
[[gnu::always_inline]] inline bool isColoured(std::int16_t c0, std::int16_t c1, std::int16_t c2) {
    constexpr std::int16_t kGreyest = 30;
    const auto sum = static_cast<std::int16_t>(c0 + c1 + c2);
    const std::int16_t most = std::max(std::max(c0, c1), c2);
    const std::int16_t least = std::min(std::min(c0, c1), c2);
    return sum < static_cast<std::int16_t>(3 * (most - kGreyest)) ||
           sum >= static_cast<std::int16_t>(3 * (least + kGreyest + 1));
}

} // namespace doccam
