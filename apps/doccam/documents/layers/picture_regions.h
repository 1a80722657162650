// Where a page shows photographs and drawings in many tones.
#pragma once

#include "documents/layers/coarse_page.h"

#include <opencv2/core/mat.hpp>

namespace doccam::host {

// 8-bit, a value per cell: 255 in pictures.
cv::Mat pictureRegions(const CoarsePage& coarse);

} // namespace doccam::host
