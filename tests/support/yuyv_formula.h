// The YUYV colour formula in floating point, the reference for faster versions.
#pragma once

#include <array>
#include <cmath>

namespace doccam::test {

// Single precision decides which values exceed the knee.
inline int limitedLevel(float value) {
    if (value > 250.0F) {
        value = 255.0F;
    }
    if (value < 0) {
        value = 0;
    }
    return static_cast<int>(std::trunc(value));
}

// The formula as documented, one line per channel: red, green, blue.
inline std::array<int, 3> yuyvFormula(int y, int u, int v) {
    const double blue = 1.164 * (y - 16) + 2.018 * (u - 128);
    const double green = 1.164 * (y - 16) - 0.813 * (v - 128) - 0.394 * (u - 128);
    const double red = 1.164 * (y - 16) + 1.596 * (v - 128);
    return {limitedLevel(static_cast<float>(red)), limitedLevel(static_cast<float>(green)),
            limitedLevel(static_cast<float>(blue))};
}

} // namespace doccam::test
