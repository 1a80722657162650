// What both kinds of still do to a page before it is saved.
#pragma once

#include <opencv2/core/mat.hpp>

namespace doccam::record {

struct Settings;

} // namespace doccam::record

namespace doccam {

// A copy of the red-first frame with blue first. Throws cv::Exception unless it has three or four
// channels.
cv::Mat blueFirst(const cv::Mat& frame);

// Whitens the blue-first page's dark margins and then its background, in its own pixels, each if
// its setting is on.
void cleanAsSet(const cv::Mat& page, const record::Settings& settings);

} // namespace doccam
