// The dark margins around a photographed sheet.
//
// Pictures must be 8-bit with three channels and not empty; otherwise cv::Exception is thrown.
#pragma once

#include "docimage/pixels/work_plane.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// Paints the margins white in place. Everything that is not nearly black counts as sheet.
void whitenMargins(cv::Mat picture);

// The same, but sheet and margins are separated by the picture's own brightness.
void whitenMarginsByBrightness(cv::Mat picture);

// 255 in the margins, 0 elsewhere. Like the sheet's outline, coloured pixels end a margin.
WorkPlane marginMask(cv::Mat picture);

} // namespace doccam
