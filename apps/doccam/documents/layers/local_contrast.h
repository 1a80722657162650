// The levels past which pixels of a page are ink.
#pragma once

#include "documents/layers/coarse_page.h"

#include <opencv2/core/mat.hpp>

namespace doccam::host {

// 8-bit, a value per cell.
struct InkLevels {
    cv::Mat darkBelow;    // darker pixels are dark ink; 0 for none
    cv::Mat lightAbove;   // lighter ones are light ink, on a dark ground; 255 for none
    cv::Mat onDarkGround; // lightAbove if all of the ground were dark
    bool anyLight = false;
};

// Of the page whose grey that is. pictures is 255 where nothing is ink.
InkLevels inkLevels(const cv::Mat& grey, const CoarsePage& coarse, const cv::Mat& pictures);

// Adapts the levels to dark fills: dark ink on them is darker still, and light ink is wherever
// inside is not 0. covered is not 0 on a fill and its edge; ground is the page without ink.
void adaptToFills(InkLevels& levels, const cv::Mat& ground, const cv::Mat& covered,
                  const cv::Mat& inside);

} // namespace doccam::host
