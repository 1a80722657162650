// Where pictures lie on a page.
#pragma once

#include "page/paper/paper_cells.h"

namespace doccam::page {

// 255 within rectangles most of whose border is a sharp edge. A pale sky has none where it meets
// the paper, so that main, the region of the paper, would run into it.
cv::Mat pictureBoxes(const Cells& cells, const Region& main);

} // namespace doccam::page
