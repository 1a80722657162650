// Whitening a page's dark margins, step by step. Pages have three channels of 8 bits.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::plain {

// A one-channel picture that is read as though its rows had no padding, though they have.
struct Plane {
    explicit Plane(cv::Size size);

    // The byte that a reader takes for (x, y) who steps from row to row by the width.
    uchar unpaddedAt(int x, int y) const {
        return memory.data[static_cast<std::size_t>(y) * static_cast<std::size_t>(rows.cols) +
                           static_cast<std::size_t>(x)];
    }

    cv::Mat memory; // rows padded to a multiple of four
    cv::Mat rows;   // the true rows, a view
};

// 255 along the outlines of what is large and bright.
Plane sheetOutline(const cv::Mat& page);

// 255 in the margins, which coloured pixels end as well.
Plane marginMask(const cv::Mat& page);

bool isColoured(const cv::Vec3b& pixel);

void deleteBlackEdge(cv::Mat page);
void deleteBlackEdgeByBrightness(cv::Mat page);

// Whitening the paper itself.
void deleteBackcolor(cv::Mat page);

} // namespace doccam::plain
