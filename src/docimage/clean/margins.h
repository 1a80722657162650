// The margins around a sheet: how far they reach on each line, and painting them.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <vector>

namespace doccam {

// Where an outline runs: one byte a pixel, 255 or 0, rows back to back. Memory of somebody else.
struct Marks {
    const uchar* first = nullptr;
    cv::Size size;

    const uchar* row(int y) const {
        return first + static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width);
    }
};

// How many pixels of each line belong to the margin at either end of it, 0 to the line's length.
struct Margins {
    std::vector<int> left, right; // by row
    std::vector<int> top, bottom; // by column
};

// A margin goes up to the outline and over the outline's first three pixels. The outline is met
// where three neighbouring positions are marked. Without one the whole line is margin.
//
// Position 0 counts as marked for a walk that begins there.
Margins findMargins(const Marks& marks);

// Sets every sample of target's pixels within the margins to 255. target is 8-bit and has the size
// that the margins were found for.
void paintMargins(cv::Mat& target, const Margins& margins);

} // namespace doccam
