// Steps that both kinds of still apply to a page before it is saved.
#pragma once

#include "state/parts.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// A blue-first copy of the red-first frame. Throws cv::Exception unless it has three or four
// channels.
cv::Mat blueFirst(const cv::Mat& frame);

// Whitens the blue-first page's dark margins and then its background in place, each if its setting
// is on.
void cleanAsSet(const cv::Mat& page, const record::Settings& settings);

} // namespace doccam
