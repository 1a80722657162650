// Whitening a page's dark margins, step by step. Pages have three channels of 8 bits.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::plain {

// A one-channel picture with padded rows that is read as though they had no padding.
struct Plane {
    explicit Plane(cv::Size size);

    // The byte found for (x, y) when the width is taken for the stride.
    uchar unpaddedAt(int x, int y) const {
        return memory.data[static_cast<std::size_t>(y) * static_cast<std::size_t>(rows.cols) +
                           static_cast<std::size_t>(x)];
    }

    cv::Mat memory; // rows padded to a multiple of four
    cv::Mat rows;   // the true rows, a view
};

// 255 along the outlines of large bright regions.
Plane sheetOutline(const cv::Mat& page);

// 255 in the margins, which coloured pixels also end.
Plane marginMask(const cv::Mat& page);

bool isColoured(const cv::Vec3b& pixel);

void deleteBlackEdge(cv::Mat page);
void deleteBlackEdgeByBrightness(cv::Mat page);

// Whitening the paper itself.
void deleteBackcolor(cv::Mat page);

} // namespace doccam::plain
