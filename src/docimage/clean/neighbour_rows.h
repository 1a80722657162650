// The rows just outside each strip of a page.
#pragma once

#include "base/strips.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam {

using PixelRow = std::vector<unsigned char>;

// Copies, so that strips can be processed in place at the same time. At the page's edge rows are
// mirrored about the edge row; a page within a larger picture continues to that picture's edge.
struct NeighbourRows {
    NeighbourRows(const cv::Mat& page, const Strips& strips);

    std::vector<PixelRow> above, below; // by strip
};

} // namespace doccam
