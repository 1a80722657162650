// Paper that curls: near a corner a side may bend away from its line.
#pragma once

#include "page/fit/offset_line.h"
#include "page/fit/side_profiles.h"

namespace doccam::page {

// The line near the start or the end of a side of that length in pixels, whose change of colour
// inwards is step. The line of the whole, unless the paper bends there: what deviates may be a
// finger or a fold.
OffsetLine lineNearEnd(const SideProfiles& profiles, const cv::Vec3f& step, const OffsetLine& whole,
                       double length, bool start);

} // namespace doccam::page
