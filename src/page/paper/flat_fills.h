// Printed areas of one colour, through which the light on a page can be seen.
#pragma once

#include "page/paper/paper_cells.h"

#include <opencv2/core/mat.hpp>

namespace doccam::page {

// Where a shadow crosses a fill, the light inside cannot be told from the paper around. Makes the
// cells of such fills known, with the light that the fill's one colour implies: colour becomes what
// paper would show there. light is what the known cells alone imply. Returns whether
// there are such fills.
bool addFlatFills(const Cells& cells, const cv::Mat& light, cv::Mat& colour, cv::Mat& known);

} // namespace doccam::page
