// A picture's histogram, and its bright regions.
#pragma once

#include "base/shared_work.h"

#include <opencv2/core/mat.hpp>

#include <array>
#include <cstddef>

namespace doccam {

inline constexpr int kLevels = 256;

// The count of each level, 0 to 255.
using Levels = std::array<int, kLevels>;

// Adds the levels of count pixels.
void countLevels(const unsigned char* pixels, int count, Levels& levels);

void addLevels(const Levels& more, Levels& levels);

// Calls makeRow(row, levels to add to) for count rows, on several threads. The levels of all.
template <typename MakeRow>
Levels levelsOfRows(int count, const MakeRow& makeRow) {
    std::array<Levels, Strips::kMaximum> levels{};
    forEachStrip(Strips(count), [&](cv::Range part, int number) {
        for (int row = part.start; row < part.end; ++row) {
            makeRow(row, levels[static_cast<std::size_t>(number)]);
        }
    });
    for (std::size_t part = 1; part < levels.size(); ++part) {
        addLevels(levels[part], levels[0]);
    }
    return levels[0];
}

// Otsu's threshold, equal to OpenCV's: levels above it are bright. 0 for fewer than two levels.
int otsuLevel(const Levels& levels);

// Sets the pixels of grey, whose levels these are, to 1 above Otsu's threshold and to 0 elsewhere
// and on the one-pixel frame: a region that touches the picture's edge ends just inside it.
void markBrightRegions(cv::Mat& grey, const Levels& levels);

} // namespace doccam
