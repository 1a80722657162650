// Areas of one colour, which are kept with sharp edges like print.
#pragma once

#include "documents/layers/coarse_page.h"
#include "documents/layers/layers.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::host {

// In cells.
struct SolidFill {
    cv::Rect box;   // with its edge
    cv::Mat inside; // 8-bit, of the box's size: 255 within the edge
    cv::Scalar colour;
    cv::Scalar around;
    int channel = 0; // in which these differ most
};

// The fills on a page outside of its pictures. ground is the page without ink.
std::vector<SolidFill> solidFills(const CoarsePage& coarse, const cv::Mat& ground,
                                  const cv::Mat& pictures);

// 8-bit, a value per cell.
struct FilledCells {
    cv::Mat covered;     // 255 where fills are, with their edges
    cv::Mat darkCovered; // the same of fills on which print may be light
    cv::Mat darkInside;  // without their edges
};

FilledCells cellsOf(const std::vector<SolidFill>& fills, const cv::Mat& ground);

// The fills as masks of that size over all the page.
std::vector<Ink> inksOf(const std::vector<SolidFill>& fills, const cv::Mat& page,
                        const CoarsePage& coarse, cv::Size size);

} // namespace doccam::host
