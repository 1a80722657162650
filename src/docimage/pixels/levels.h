// A picture's histogram, and the threshold between dark and bright.
#pragma once

#include <array>

namespace doccam {

inline constexpr int kLevels = 256;

// The count of each level, 0 to 255.
using Levels = std::array<int, kLevels>;

// Adds the levels of count pixels.
void countLevels(const unsigned char* pixels, int count, Levels& levels);

void addLevels(const Levels& more, Levels& levels);

// Otsu's threshold: levels above it are bright. Equal to OpenCV's for a picture with these levels;
// 0 if there are fewer than two.
int otsuLevel(const Levels& levels);

} // namespace doccam
