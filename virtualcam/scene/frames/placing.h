// Where sheets come to lie, and how the camera looks at them.
#pragma once

#include "scene/sheets/laid_sheet.h"
#include "scene/views/camera_view.h"

#include <opencv2/core.hpp>

#include <vector>

namespace doccam::virtualcam {

inline const cv::Size kFullSize(3264, 2448);

// A focal length of 0.8 to 1.5 widths, tilted by that many degrees in a random direction.
CameraView randomView(double leastTilt, double largestTilt, cv::RNG& random);

// Lays the sheet somewhere, turned anyhow, and moves the camera until the sheet fills that part of
// the picture; less where it would not fit as a whole.
void placeWhole(LaidSheet& sheet, CameraView& view, double fill, cv::RNG& random);

// The same with one side of the sheet outside of the picture.
void placeCut(LaidSheet& sheet, CameraView& view, double fill, cv::RNG& random);

// Lays the sheets beside each other under a camera that sees width millimetres; drops those for
// which no place is left.
void placeBesideEachOther(std::vector<LaidSheet>& sheets, CameraView& view, double width,
                          cv::RNG& random);

} // namespace doccam::virtualcam
