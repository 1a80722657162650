// Parting what is bright in a grey picture from the rest.
#pragma once

#include "docimage/pixels/levels.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// Makes pixels above Otsu's threshold 1 and others 0, those of the one-pixel frame as well: a
// region that touches the picture's edge ends just inside of it. levels are those of grey, 8-bit
// with one channel.
void markBrightRegions(cv::Mat& grey, const Levels& levels);

} // namespace doccam
