// The print of a page as masks.
#pragma once

#include "documents/layers/coarse_page.h"
#include "documents/layers/local_contrast.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>

namespace doccam::host {

struct InkMasks {
    cv::Mat dark;  // 8-bit, 255 where ink
    cv::Mat light; // the same of ink lighter than its ground; empty: none
};

// At scale times the resolution of the page whose grey that is.
InkMasks inkMasksAt(double scale, const cv::Mat& grey, const CoarsePage& coarse,
                    const InkLevels& levels);

// As fine as print needs, or somewhat coarser to keep within maximumBytes encoded.
InkMasks inkMasks(const cv::Mat& grey, const CoarsePage& coarse, const InkLevels& levels,
                  double dpi, std::size_t maximumBytes);

} // namespace doccam::host
