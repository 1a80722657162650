// The few colours of a page's ink.
#pragma once

#include "documents/layers/ink_pieces.h"
#include "documents/layers/layers.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace doccam::host {

// Parts a mask over all the page by the colours that its strokes have there. Removes specks.
// light: of ink that is lighter than its ground.
std::vector<Ink> inksByColour(const cv::Mat& mask, const InkedPage& inked, bool light);

} // namespace doccam::host
