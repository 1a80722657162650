// The weights of colours in a grey level: OpenCV's, so that levels are the same.
#pragma once

namespace doccam {

// In fixed point: sum a pixel's weighted samples and the half, then shift.
inline constexpr int kRedWeight = 9798;
inline constexpr int kGreenWeight = 19235;
inline constexpr int kBlueWeight = 3735;
inline constexpr int kGreyShift = 15;
inline constexpr int kGreyHalf = 1 << (kGreyShift - 1);

[[gnu::always_inline]] inline unsigned char greyLevel(int red, int green, int blue) {
    const int sum = kRedWeight * red + kGreenWeight * green + kBlueWeight * blue;
    return static_cast<unsigned char>((sum + kGreyHalf) >> kGreyShift);
}

} // namespace doccam
