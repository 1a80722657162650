// The curve that lifts dark samples.
#pragma once

#include <array>

namespace doccam {

// The 256 samples to put in place of 0 to 255.
std::array<unsigned char, 256> gammaCurve(float gamma);

} // namespace doccam
