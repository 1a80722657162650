// The rows just outside of each strip of a page.
#pragma once

#include "base/strips.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam {

using PixelRow = std::vector<unsigned char>;

// Copies, so that strips can be worked on at once in the page's own memory. At the page's edge the
// row outside is the one on the other side of the edge row; a page that is a part of a larger
// picture ends where that one does.
struct NeighbourRows {
    NeighbourRows(const cv::Mat& page, const Strips& strips);

    std::vector<PixelRow> above, below; // by strip
};

} // namespace doccam
