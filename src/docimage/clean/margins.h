// Finding and painting the margins around a sheet.
#pragma once

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <vector>

namespace doccam {

// A view of an outline: one byte per pixel, 255 or 0, rows back to back.
struct Marks {
    const uchar* first = nullptr;
    cv::Size size;

    const uchar* row(int y) const {
        return first + static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width);
    }
};

// The pixels of margin at both ends of each line, 0 to the line's length.
struct Margins {
    std::vector<int> left, right; // by row
    std::vector<int> top, bottom; // by column
};

// A margin extends over the first three neighbouring marks, or else over the whole line. Position 0
// counts as marked for a walk that begins there.
Margins findMargins(const Marks& marks);

// Sets the pixels of target, 8-bit and of the marks' size, to 255 within the margins.
void paintMargins(cv::Mat& target, const Margins& margins);

} // namespace doccam
