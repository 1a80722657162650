// How often each grey level occurs in a picture, and the one that parts dark from bright.
#pragma once

#include <array>

namespace doccam {

inline constexpr int kLevels = 256;

// By level, 0 to 255.
using Levels = std::array<int, kLevels>;

// Adds the levels of count pixels.
void countLevels(const unsigned char* pixels, int count, Levels& levels);

void addLevels(const Levels& more, Levels& levels);

// The threshold by Otsu's method: the levels above it are bright. The same as OpenCV's
// for a picture with these levels; 0 when there are fewer than two.
int otsuLevel(const Levels& levels);

} // namespace doccam
