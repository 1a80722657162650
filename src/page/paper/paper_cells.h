// Which cells of a reduced page could be paper, and how they hang together.
#pragma once

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::page {

// A coherent region without sharp edges inside: light on it changes softly.
struct Region {
    int label = 0; // its value in Cells::labels
    int area = 0;  // in cells
    cv::Rect box;
    double brightness = 0; // of its bright part, 0 to 255
    double saturation = 0; // 0 to 1
};

struct Cells {
    cv::Mat colour; // 32-bit floats, the page's channels
    cv::Mat labels; // 32-bit integers; 0: an edge
    std::vector<Region> regions;
};

// The cells, each of two by two pixels, of a reduced page without ink.
Cells paperCells(const cv::Mat& reduced);

// The region that is most likely paper, large, bright and pale; null if there is none.
const Region* mainPaper(const Cells& cells);

} // namespace doccam::page
