// The dark margins around a photographed sheet.
//
// Pictures are 8-bit with three channels; cv::Exception for any other, an empty one too.
#pragma once

#include "docimage/pixels/work_plane.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// Paints the margins white in picture's own pixels. Everything that is not nearly black counts as
// sheet.
void whitenMargins(cv::Mat picture);

// The same, but sheet is what the picture's own brightness separates from the rest.
void whitenMarginsByBrightness(cv::Mat picture);

// 255 in the margins, 0 elsewhere. Coloured pixels end a margin as the sheet's outline does.
WorkPlane marginMask(cv::Mat picture);

} // namespace doccam
