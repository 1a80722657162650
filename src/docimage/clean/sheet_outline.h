// The outlines of large bright regions.
#pragma once

#include "docimage/clean/page_grey.h"
#include "docimage/pixels/work_plane.h"

#include <opencv2/core/types.hpp>

#include <span>

namespace doccam {

// 255 along the outlines, three pixels wide, and 0 elsewhere, in grey's own memory. Bright regions
// are taken from the lowest upward: from the first one of more than 30000 pixels on, all are
// outlined, including small ones. Regions end one pixel before the picture's edge.
WorkPlane sheetOutline(PageGrey grey);

// Draws the closed outline with 255 exactly as OpenCV draws a contour of thickness 2. Neighbouring
// points differ by one step in eight directions; none may lie on the plane's one-pixel frame.
void drawOutline(std::span<const cv::Point> outline, cv::Mat& plane);

} // namespace doccam
