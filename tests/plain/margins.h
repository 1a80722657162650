// The margins around a sheet, line by line and pixel by pixel.
#pragma once

#include <opencv2/core/mat.hpp>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace doccam::plain {

enum class Walk { kForward, kBackward };

// The number of pixels in the margin of a line of length positions, at the end where the walk
// begins: all before the outline, and the outline's first three. The outline begins where three
// neighbouring positions are marked. Without one the whole line is margin.
//
// Position 0 counts as the first mark's neighbour, so that a forward walk takes marks at 1 and 2
// for an outline that begins at 0.
template <typename IsMarked>
int marginDepth(int length, Walk walk, IsMarked isMarked) {
    constexpr int kOutline = 3;
    int previous = 0;
    int start = 0;
    int run = 0;
    for (int i = 0; i < length; ++i) {
        const int position = walk == Walk::kForward ? i : length - 1 - i;
        if (!isMarked(position)) {
            continue;
        }
        if (std::abs(position - previous) == 1) {
            ++run;
        } else {
            run = 0;
            start = position;
        }
        previous = position;
        if (run == kOutline - 1) {
            const int before = walk == Walk::kForward ? start : length - 1 - start;
            return std::min(before + kOutline, length);
        }
    }
    return length;
}

// Depths in pixels, 0 to the line's length.
struct Margins {
    std::vector<int> left, right; // by row
    std::vector<int> top, bottom; // by column
};

// isMarked(x, y) returns whether the outline runs through a pixel.
template <typename IsMarked>
Margins findMargins(cv::Size size, IsMarked isMarked) {
    Margins margins;
    for (int y = 0; y < size.height; ++y) {
        const auto inRow = [&](int x) { return isMarked(x, y); };
        margins.left.push_back(marginDepth(size.width, Walk::kForward, inRow));
        margins.right.push_back(marginDepth(size.width, Walk::kBackward, inRow));
    }
    for (int x = 0; x < size.width; ++x) {
        const auto inColumn = [&](int y) { return isMarked(x, y); };
        margins.top.push_back(marginDepth(size.height, Walk::kForward, inColumn));
        margins.bottom.push_back(marginDepth(size.height, Walk::kBackward, inColumn));
    }
    return margins;
}

// Sets the pixels of target within the margins to 255. target is 8-bit and of the size that the
// margins were found for.
void paintMargins(cv::Mat& target, const Margins& margins);

} // namespace doccam::plain
