// Separating the bright regions of a grey picture.
#pragma once

#include "docimage/pixels/levels.h"

#include <opencv2/core/mat.hpp>

namespace doccam {

// Sets pixels above Otsu's threshold to 1 and all others, including the one-pixel frame, to 0: a
// region that touches the picture's edge ends just inside it. levels must be those of grey, which
// is 8-bit with one channel.
void markBrightRegions(cv::Mat& grey, const Levels& levels);

} // namespace doccam
