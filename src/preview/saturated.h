// Saturating conversions to int: a host may declare any form and pan by any distance.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace doccam {

constexpr int saturated(std::int64_t value) {
    return static_cast<int>(std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

// Truncates toward zero; 0 for NaN.
inline int truncated(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    return static_cast<int>(std::clamp(value, double{std::numeric_limits<int>::min()},
                                       double{std::numeric_limits<int>::max()}));
}

} // namespace doccam
