// From frames with a sheet of known size to a desk of known scale.
#pragma once

#include "documents/paper/desk.h"

#include <optional>
#include <vector>

namespace doccam::host {

// The mean of the sheet's corners in several frames of that size; none: it was not found in that
// one. Throws Failure for a sheet that was not found in most, that moved, or that is cut off.
FrameCorners meanSheet(const std::vector<std::optional<FrameCorners>>& sheets, cv::Size frame);

// The paper turned like a sheet with these proportions, width to height. Throws Failure if they
// differ too much.
Millimetres turnedToFit(Millimetres paper, double proportions);

} // namespace doccam::host
